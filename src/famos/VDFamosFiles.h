#pragma once

#include "VDFamosRecording.h"

#include "bus/VDFamosValues.h"

#include <deque>

/// The files of one test: one, or one a channel. Few are open at a time.
class VDFamosFiles
{
public:
    explicit VDFamosFiles(VTFamosContent content) : content_(content) {}

    /// Finds the file and the channel in it that an index of the id stands for.
    /// @return false, recorded
    bool FindChannel(VDFileId* id, int index, std::size_t* file, std::size_t* channel);
    void Clear();

    const VDFamosRecording& Get(std::size_t file) const { return *files_[file].recording; }
    std::size_t GetCount() const { return files_.size(); }
    /// What is wrong with the files, apart from their channels.
    std::string GetDamage() const;

    /// @param first  from 0
    template <class Value>
    bool Read(std::size_t file, const VDFamosLayout& layout, std::int64_t first, std::int64_t count, Value* values)
    {
        VDIo* const io = Use(file);
        return io != nullptr && files_[file].values.Read(*io, layout, first, count, values);
    }

private:
    struct File
    {
        std::unique_ptr<VDFamosRecording> recording;
        VDFamosValues values;
    };

    bool FindFile(const VDString& filename, std::size_t* file);
    VDIo* Use(std::size_t file);

    VTFamosContent content_;
    std::vector<File> files_;
    std::unordered_map<std::string, std::size_t> fileByName_;
    std::deque<std::size_t> open_;  ///< in the order in which they were opened
};
