#pragma once

#include "daxlib/DaxTypes.h"
#include "vdbase/VDString.h"

#include <memory>

/// The rules that split a file's base name into test stem and channel number, and that put the two together again.
///
/// A new object has the values of the preferences under "/FileFormats/General/", which are read once per process. A setter
/// ignores a value outside its range. One thread uses an object at a time; any thread may make one.
class DAX_API VDChanSep
{
public:
    VDChanSep();
    VDChanSep(const VDChanSep& other);
    VDChanSep& operator=(const VDChanSep& other);
    virtual ~VDChanSep();

    /// Takes the values of the preferences.
    /// @param force  non-zero reads the preferences again, for all objects to come
    void RefreshFromDefaults(char force);
    /// Overrides the method's preference for the rest of the process. The other values are not kept: this object, too, has
    /// those of the preferences afterwards.
    void SaveSettingsToPreferences();

    VTChanSepMethod GetChanSepMethod() const;
    /// Whether digits that all channels of a test share in front move into the test's stem.
    char GetMaximiseTestName() const;
    int GetMinChanDigits() const;
    int GetMaxChanDigits() const;
    int GetFixedChanDigits() const;
    /// How many digits on the left of the number stay with the stem.
    int GetIgnoredChanDigits() const;

    /// @param method  a `VTChanSepMethod`
    void SetChanSepMethod(VTChanSepMethod method);
    void SetMaximiseTestName(char maximise);
    /// Sets both or neither.
    /// @param min  0 to 9
    /// @param max  1 to 10, and not below `min`
    void SetMinMaxChanDigits(int min, int max);
    /// @param digits  1 to 10
    void SetFixedChanDigits(int digits);
    /// @param digits  0 to 9
    void SetIgnoredChanDigits(int digits);

    /// Least width of a channel number in a file name.
    int GetChanDigits() const;
    /// A printf format for a channel number, such as "%02d".
    VDString GetFormatString() const;
    /// A channel number in that format.
    VDString GetChanText(int chan) const;
    VDString ConstructFilename(const char* folder, const char* stem, int chan, const char* extension) const;

    /// Splits the name of a channel's file.
    /// @param stem       gets the test's stem with its folder
    /// @param extension  gets the extension without the dot
    /// @param chan       gets the channel number
    /// @return 0, and no argument is written, if the name doesn't have that form. Each out argument may be null
    char IsTestPlusChannels(const char* filename, VDString* stem, VDString* extension, int* chan) const;

private:
    struct Values;

    std::unique_ptr<Values> values_;
};
