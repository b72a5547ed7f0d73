#pragma once

#include "daxlib/DaxHandle.h"
#include "vdstore/LQDataManager.h"

#include <fcntl.h>
#include <unistd.h>
#ifdef DAX_HAVE_HDF5
#include <hdf5.h>
#endif

#include <cstdint>
#include <string>
#include <vector>

// The kinds of files that StorageBench compares. A kind has
// - a constructor (name, points of a channel, whether it is made anew), and a destructor that gives the file up;
// - Write(channel, first point, points, values) and Read(channel, first point, points, values);
// - Leave(), after which the system has all data, on the way to the disk or not;
// - Commit(), after which a loss of power harms nothing.
// All give false if something fails.

constexpr int BenchChannels = 4;

/// The data and nothing else: written in the order in which they come, read as if each channel lay in one piece.
class PlainFile
{
public:
    PlainFile(const std::string& name, std::int64_t points, bool create)
        : handle_(open(name.c_str(), create ? O_RDWR | O_CREAT | O_TRUNC : O_RDONLY, 0644)), points_(points)
    {
    }
    ~PlainFile() { close(handle_); }
    PlainFile(const PlainFile&) = delete;
    PlainFile& operator=(const PlainFile&) = delete;

    bool Write(int, std::int64_t, std::int64_t count, const float* values)
    {
        return write(handle_, values, static_cast<std::size_t>(count) * 4) == count * 4;
    }
    bool Read(int channel, std::int64_t first, std::int64_t count, float* values)
    {
        return pread(handle_, values, static_cast<std::size_t>(count) * 4, (channel * points_ + first) * 4) == count * 4;
    }
    bool Leave() { return handle_ >= 0; }
    bool Commit() { return fdatasync(handle_) == 0; }

private:
    int handle_;
    std::int64_t points_;
};

/// A time series of the structured storage.
class StorageFile
{
public:
    StorageFile(const std::string& name, std::int64_t, bool create)
    {
        Z4Manager& files = *LQGetDataManager()->GetFileManager();
        file_ = create ? files.CreateFile(name.c_str(), nullptr) : files.OpenFile(name.c_str(), false);
        if (file_ == nullptr)
            return;
        object_ = LQGetDataManager()->AdoptTimeSeries(file_->GetRoot(), "TimeSeries", nullptr, Z4Size::Record32K);
        if (!create || object_ == nullptr)
            return;
        file_->SetSubType(11);
        object_->AdjustChannelCountSinglePrecision(BenchChannels);
        for (int channel = 0; channel < BenchChannels; ++channel)
            object_->GetMapper()->SetChannelNumber(channel + 1, channel);
    }
    ~StorageFile() { Close(false); }
    StorageFile(const StorageFile&) = delete;
    StorageFile& operator=(const StorageFile&) = delete;

    bool Write(int channel, std::int64_t first, std::int64_t count, const float* values)
    {
        return object_ != nullptr && object_->SetData(first, count, values, channel);
    }
    bool Read(int channel, std::int64_t first, std::int64_t count, float* values)
    {
        std::int64_t read = 0;
        return object_ != nullptr && object_->GetData(first, count, &read, values, channel) && read == count;
    }
    /// No data are held back; the indexes follow with the commit.
    bool Leave() { return object_ != nullptr; }
    bool Commit() { return Close(true); }

private:
    bool Close(bool save)
    {
        const bool good = object_ != nullptr && LQGetDataManager()->Close(object_, save);
        const bool closed = file_ != nullptr && LQGetDataManager()->GetFileManager()->CloseFile(file_, save);
        object_ = nullptr;
        file_ = nullptr;
        return good && closed;
    }

    Z4File* file_ = nullptr;
    LQTimeSeries* object_ = nullptr;
};

/// The same file as a host sees it, through the access functions.
class AccessFile
{
public:
    AccessFile(const std::string& name, std::int64_t, bool create) : acc_(TSAccCreate())
    {
        const VDFileIdHandle id = create ? MakeId(name) : Identify(name);
        open_ = id && TSAccSetId(acc_.Get(), id.Get(), create) != 0 &&
                TSAccOpen(acc_.Get(), create ? VTTsAccOpenCreate : VTTsAccOpenRead) != 0;
    }

    bool Write(int channel, std::int64_t first, std::int64_t count, const float* values)
    {
        return open_ && TSAccPutData(acc_.Get(), channel, first + 1, count, values) != 0;
    }
    bool Read(int channel, std::int64_t first, std::int64_t count, float* values)
    {
        return open_ && TSAccGetData(acc_.Get(), channel, first + 1, count, nullptr, values) != 0;
    }
    bool Leave() { return open_; }
    bool Commit() { return open_ && TSAccClose(acc_.Get()) != 0; }

private:
    static VDFileIdHandle MakeId(const std::string& name)
    {
        VDFileIdHandle id(FIDCreate());
        FIDSetFileId(id.Get(), DaxStorageFileId, 11);
        FIDSetFilename(id.Get(), VTNameFormFile, name.c_str(), "");
        int index = 0;
        for (int number = 1; number <= BenchChannels; ++number)
            FIDAddChannel(id.Get(), number, &index);
        FIDSetIdentified(id.Get(), 1);
        FIDSetInfoLoaded(id.Get(), 1);
        return id;
    }
    static VDFileIdHandle Identify(const std::string& name)
    {
        const VDFileIdHandle file(FIDCreate());
        const VDFileInfoHandle formats(FINFCreate());
        VDFileIdArrayHandle tests;
        VDFileIdHandle test;
        if (FIDSetFilename(file.Get(), VTNameFormFile, name.c_str(), "") != 0 &&
            FINFIdentifyFile(formats.Get(), file.Get(), 1, tests.Out()) != 0)
            FIAGetAt(tests.Get(), 0, test.Out());
        return test;
    }

    VDTsAccHandle acc_;
    bool open_ = false;
};

#ifdef DAX_HAVE_HDF5
/// A data set with chunks of 32 KiB for each channel.
class Hdf5File
{
public:
    Hdf5File(const std::string& name, std::int64_t points, bool create) : name_(name)
    {
        file_ = create ? H5Fcreate(name.c_str(), H5F_ACC_TRUNC, H5P_DEFAULT, H5P_DEFAULT)
                       : H5Fopen(name.c_str(), H5F_ACC_RDONLY, H5P_DEFAULT);
        const auto size = static_cast<hsize_t>(points);
        const hsize_t unlimited = H5S_UNLIMITED;
        const hsize_t chunk = 32 * 1024 / 4;
        const hid_t space = H5Screate_simple(1, &size, &unlimited);
        const hid_t layout = H5Pcreate(H5P_DATASET_CREATE);
        H5Pset_chunk(layout, 1, &chunk);
        H5Pset_fill_time(layout, H5D_FILL_TIME_NEVER);
        for (int i = 0; i < BenchChannels; ++i) {
            const std::string set = "channel" + std::to_string(i);
            sets_.push_back(create
                                ? H5Dcreate2(file_, set.c_str(), H5T_NATIVE_FLOAT, space, H5P_DEFAULT, layout, H5P_DEFAULT)
                                : H5Dopen2(file_, set.c_str(), H5P_DEFAULT));
        }
        H5Pclose(layout);
        H5Sclose(space);
    }
    ~Hdf5File() { Close(); }
    Hdf5File(const Hdf5File&) = delete;
    Hdf5File& operator=(const Hdf5File&) = delete;

    bool Write(int channel, std::int64_t first, std::int64_t count, const float* values)
    {
        return Transfer(channel, first, count, [&](hid_t set, hid_t memory, hid_t space) {
            return H5Dwrite(set, H5T_NATIVE_FLOAT, memory, space, H5P_DEFAULT, values);
        });
    }
    bool Read(int channel, std::int64_t first, std::int64_t count, float* values)
    {
        return Transfer(channel, first, count, [&](hid_t set, hid_t memory, hid_t space) {
            return H5Dread(set, H5T_NATIVE_FLOAT, memory, space, H5P_DEFAULT, values);
        });
    }
    bool Leave() { return Close(); }
    bool Commit()
    {
        const bool good = Close();
        const int handle = open(name_.c_str(), O_RDWR);
        const bool synced = fdatasync(handle) == 0;
        close(handle);
        return good && synced;
    }

private:
    template <class Move>
    bool Transfer(int channel, std::int64_t first, std::int64_t count, Move move) const
    {
        const auto start = static_cast<hsize_t>(first);
        const auto size = static_cast<hsize_t>(count);
        const hid_t set = sets_[static_cast<std::size_t>(channel)];
        const hid_t memory = H5Screate_simple(1, &size, nullptr);
        const hid_t space = H5Dget_space(set);
        H5Sselect_hyperslab(space, H5S_SELECT_SET, &start, nullptr, &size, nullptr);
        const bool good = move(set, memory, space) >= 0;
        H5Sclose(space);
        H5Sclose(memory);
        return good;
    }
    bool Close()
    {
        bool good = true;
        for (const hid_t set : sets_)
            good = H5Dclose(set) >= 0 && good;
        sets_.clear();
        good = (file_ < 0 || H5Fclose(file_) >= 0) && good;
        file_ = -1;
        return good;
    }

    std::string name_;
    hid_t file_;
    std::vector<hid_t> sets_;
};
#endif
