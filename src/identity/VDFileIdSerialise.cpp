// The binary form of file ids: objects in a host's file.

#include "StoredRecord.h"
#include "VDFileId.h"
#include "VDFileIdArray.h"
#include "VDFileIdNameWatch.h"

#include "frame/VFDaxReport.h"

#include "vdbase/VDIo.h"

namespace {

constexpr int VVVersion = 1;
constexpr const char* VVRoutine = "VDFileId::Serialise";

class Writer
{
public:
    explicit Writer(VDIo& io) : io_(io) {}
    bool Number(long value) { return io_.Put(value); }
    bool Flag(bool value) { return io_.Put(static_cast<char>(value)); }
    bool Text(const VDString& value) { return io_.Put(value); }

private:
    VDIo& io_;
};

class Reader
{
public:
    explicit Reader(VDIo& io) : io_(io) {}
    bool Number(long& value) { return io_.Get(&value); }
    bool Number(std::int32_t& value)
    {
        long number = 0;
        if (!io_.Get(&number))
            return false;
        value = static_cast<std::int32_t>(number);
        return true;
    }
    bool Flag(bool& value)
    {
        char flag = 0;
        if (!io_.Get(&flag))
            return false;
        value = flag != 0;
        return true;
    }
    bool Text(VDString& value) { return io_.Get(&value); }

private:
    VDIo& io_;
};

/// All fields but the channels, for both directions.
template <class Stream, class Record, class Limits>
bool VFTransfer(Stream stream, Record& record, Limits& limits)
{
    return stream.Number(limits.nameForm) && stream.Text(record.filename) && stream.Text(record.extension) &&
           stream.Text(record.fullPathName) && stream.Number(record.fileId) && stream.Number(record.subId) &&
           stream.Number(record.version) && stream.Number(record.subVersion) && stream.Number(record.opSys) &&
           stream.Number(record.run) && stream.Number(record.burst) && stream.Number(record.mode) &&
           stream.Text(record.title) && stream.Text(record.modeTitle) && stream.Text(record.extraMetadataFilename) &&
           stream.Text(record.associatedFilename) && stream.Flag(record.showChannels) && stream.Flag(record.selected) &&
           stream.Number(limits.chanDigits) && stream.Number(limits.dataSource) && stream.Text(record.dataPath) &&
           stream.Text(record.objectReference);
}

template <class Stream, class Channel>
bool VFTransferChannel(Stream stream, Channel& channel)
{
    return stream.Number(channel.number) && stream.Flag(channel.selected) && stream.Text(channel.title) &&
           stream.Text(channel.units);
}

/// Enters an object of this id. One of another version is told of and read all the same.
bool VFStartReading(VDIo& io, std::int64_t* context, int wanted)
{
    int id = 0;
    int version = 0;
    if (!io.StartReadObject(context, &id, &version, nullptr))
        return false;
    if (id != wanted)
        return VFDaxReportError(DaxError::SerialisedId, VVRoutine) != 0;
    if (version != VVVersion)
        VFDaxReportError(DaxError::SerialisedVersion, VVRoutine);
    return true;
}

/// Writes or reads one object, which is left again whatever happens in it.
template <class Work>
int VFInWrittenObject(VDIo& io, int id, std::int64_t* context, Work work)
{
    const bool written = io.StartWriteObject(id, VVVersion, 0) && work();
    return io.FinishWriteObject(context) && written;
}

template <class Work>
int VFInReadObject(VDIo& io, int id, std::int64_t* context, Work work)
{
    const bool read = VFStartReading(io, context, id) && work();
    return io.FinishReadObject() && read;
}

}  // namespace

int VDFileId::Serialise(VDIo* io, char reading, std::int64_t* context)
{
    if (io == nullptr)
        return 0;
    if (reading != 0)
        return VFInReadObject(*io, HandleId, context, [&] { return ReadFields(*io); });
    return VFInWrittenObject(*io, HandleId, context, [&] {
        const VDStoredLimits limits = VDStoredLimits::Of(record_);
        bool done = VFTransfer(Writer(*io), record_, limits) && io->Put(static_cast<long>(record_.channels.GetSize()));
        for (const VDFileIdChanInfo& channel : record_.channels)
            done = done && VFTransferChannel(Writer(*io), channel);
        return done;
    });
}

bool VDFileId::ReadFields(VDIo& io)
{
    const NameWatch watch(*this);
    LeaveTemporaryTest();
    DropMetadataValues();
    record_.channels.Clear();
    VDStoredLimits limits;
    long count = 0;
    if (!VFTransfer(Reader(io), record_, limits) || !io.Get(&count) || !limits.Check(VVRoutine))
        return false;
    limits.Apply(record_);
    for (long index = 0; index < count; ++index) {
        VDFileIdChanInfo channel;
        if (!VFTransferChannel(Reader(io), channel))
            return false;
        record_.channels.Append(std::move(channel));
    }
    return true;
}

int VDFileIdArray::Serialise(VDIo* io, char reading, std::int64_t* context)
{
    if (io == nullptr)
        return 0;
    if (reading != 0)
        return VFInReadObject(*io, HandleId, context, [&] { return ReadEntries(*io); });
    return VFInWrittenObject(*io, HandleId, context, [&] {
        bool done = io->Put(static_cast<long>(entries_.GetSize()));
        for (const VDListedId& entry : entries_)
            done = done && FIDSerialise(entry.Get(), io, 0, nullptr) != 0;
        return done;
    });
}

bool VDFileIdArray::ReadEntries(VDIo& io)
{
    long count = 0;
    if (Clear() == 0 || !io.Get(&count))
        return false;
    for (long index = 0; index < count; ++index) {
        VDFileIdHandle id(FIDCreate());
        if (!id || FIDSerialise(id.Get(), &io, 1, nullptr) == 0)
            return false;
        Take(std::move(id));
    }
    return true;
}
