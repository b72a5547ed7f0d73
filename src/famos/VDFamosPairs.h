#pragma once

#include "VDFamosFiles.h"

#include "daxlib/DaxHandle.h"
#include "vdbase/VDVariant.h"
#include "vdstore/LQChannelMapper.h"

/// One test of pairs of Famos recordings, for multi-column access. Every failure is recorded.
class VDFamosPairs
{
public:
    bool SetId(VDFileId* id, char create);
    bool Open(int mode);
    bool Close();
    static bool GetCapability(int capability);
    bool GetValue(long channel, long column, int key, VDVariant* value);
    bool GetData(long channel, long column, std::int64_t first, std::int64_t count, VDVariant* values);
    bool GetData(long channel, long column, std::int64_t first, std::int64_t count, float* values);
    bool GetElement(long channel, long column, std::int64_t row, VDVariant* value);
    bool LoadMetaData(LQChannelMapper** mapper);

private:
    struct Column
    {
        std::size_t channel;  ///< in the file
        VDFamosLayout layout;
        bool isFloat;
    };
    struct Pair
    {
        std::size_t file;
        long number;
        Column columns[2];  ///< x and y
        std::int64_t rows;
    };

    bool AddPair(int index);
    const Pair* FindPair(long channel) const;
    template <class Value>
    bool Read(long channel, long column, std::int64_t first, std::int64_t count, Value* values);
    VDVariant GetChannelValue(const Pair& pair, long column, int key) const;
    void GetFormatSpecific(VDVariant* list) const;

    VDFileIdHandle fileId_;
    VDFamosFiles files_{VTFamosContent::Pairs};
    std::vector<Pair> pairs_;
    std::string damage_;
    std::unique_ptr<LQChannelMapper> mapper_;
};
