#pragma once

#include "vdbase/VFError.h"

#include <string>
#include <vector>

/// The program's own errors. They are recorded in the error system like those of the library, in a range of their own, so
/// that all come out the same way.
namespace DaxToolError {
constexpr int Usage = -900001;             ///< the command line can't be understood
constexpr int UnknownChannel = -900002;    ///< no channel of this number
constexpr int SeveralTests = -900003;      ///< the file holds several tests and none was chosen
constexpr int UnknownTest = -900004;       ///< no test of this position
constexpr int NotTimeSeries = -900005;     ///< the test holds another kind of data
constexpr int FirstPoint = -900006;        ///< the first point lies behind the end
constexpr int DifferentTimes = -900007;    ///< channels of different times can't share one CSV
constexpr int OutputExists = -900008;      ///< the output exists and may not be replaced
constexpr int OutputIsInput = -900009;     ///< the output is the input
constexpr int OutputWrite = -900010;       ///< the output can't be written
constexpr int NoFormat = -900011;          ///< no writable format fits
constexpr int CommonHeader = -900012;      ///< the format has one header for all channels, and they differ
constexpr int Lossy = -900013;             ///< the copy would lose something and must not
constexpr int Incomplete = -900014;        ///< what was written isn't what it should be
constexpr int Interrupted = -900015;       ///< a signal ended the work
constexpr int ExtensionIgnored = -900016;  ///< the preferences pass over files of this extension
constexpr int Internal = -900017;          ///< anything unforeseen
constexpr int UnknownFrame = -900018;      ///< no frame of this id
constexpr int FrameTooShort = -900019;     ///< fewer bytes than the frame has
constexpr int Damaged = -900020;           ///< the file says itself that something of it is missing or wrong
constexpr int NoFrame = -900021;           ///< a log without a frame
constexpr int NotToOutput = -900022;       ///< the format can't go to the standard output
constexpr int InputRead = -900023;         ///< an input that is no measurement file can't be read
constexpr int DerivedItem = -900024;       ///< metadata that the library makes itself
constexpr int NoItem = -900025;            ///< no such item of metadata, or none at all
constexpr int ItemValue = -900026;         ///< a text that is no value of an item's type
constexpr int ItemLeftOut = -900027;       ///< an item that the output can't hold
constexpr int MetaDataUnread = -900028;    ///< the metadata beside a file can't be read
constexpr int NameChanged = -900029;       ///< signs that a name can't hold were replaced
constexpr int BadName = -900030;           ///< no name for an output
constexpr int UnknownColumn = -900031;     ///< no such column or data set
constexpr int UnknownSpectrum = -900032;   ///< no such spectrum or line
constexpr int NoTest = -900041;            ///< no test matches
constexpr int Unread = -900042;            ///< a file or folder of a list can't be read
constexpr int NotWhole = -900051;          ///< a part of a test can't be deleted
constexpr int SameOutput = -900052;        ///< two inputs would form one output
}  // namespace DaxToolError

/// Thrown when a step has failed and its error is recorded.
class VDFailure
{
};

/// Records an error of the program and throws.
[[noreturn]] void VFFail(int code, const std::string& text, const char* routine);
/// The same with the system's reason of the last failed call behind the text.
[[noreturn]] void VFFailSystem(int code, const std::string& text, const char* routine);

/// Throws if a call of the library failed.
void VFCheck(int result);

/// What is recorded on this thread, the oldest first; the record is empty afterwards.
std::vector<VDErrorReport> VFTakeErrors();
/// Records reports again.
void VFPutErrors(const std::vector<VDErrorReport>& reports);
