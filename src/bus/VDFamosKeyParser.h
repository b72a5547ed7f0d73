#pragma once

#include "FamosRecords.h"
#include "VDFamosFields.h"

/// Reads the keys of a Famos file into a header. A file is a sequence of keys
///
///     |CK,1,3,1,1;
///
/// with name, version, length in bytes of what follows the comma after the length, and fields. Bytes between keys are passed
/// over. Samples are hopped over by the length of their key. Failures are recorded under `VDFamosUtil::ParseFile`.
class VDFamosKeyParser
{
public:
    /// The file must be open and outlive the object.
    VDFamosKeyParser(VDIo& file, std::int64_t fileSize, VDFamosHeader& header);

    bool Run();

private:
    struct Key
    {
        VDString name;
        int version = 0;
        std::int64_t length = 0;
        std::int64_t dataStart = 0;
    };
    /// Reads the fields of one key; gives 0 or the code of the failure.
    using Reader = int (VDFamosKeyParser::*)(const Key& key);
    struct KeyType
    {
        std::string_view name;
        Reader read;
    };
    static const KeyType VVKeyTypes[];

    bool ReadKey(Key* key);
    int Dispatch(const Key& key);
    void HopOver(const Key& key);

    int ReadId(const Key& key);
    int ReadStatus(const Key& key);
    int ReadOrigin(const Key& key);
    int ReadGroupDefinition(const Key& key);
    int ReadTextDefinition(const Key& key);
    int ReadData(const Key& key);
    int ReadScaling(const Key& key);
    int ReadTriggerTime(const Key& key);
    int ReadComponent(const Key& key);
    int ReadPacket(const Key& key);
    int ReadBufferDescription(const Key& key);
    int ReadRange(const Key& key);
    int ReadChannelName(const Key& key);
    int ReadSamples(const Key& key);

    bool ReadIntegers(std::initializer_list<int*> values);
    bool ReadBuffers(const Key& key, int numTimes, VDFamosBufferDescription* description);
    bool ReadBuffer(int numTimes, VDFamosBufferDescription* description);
    /// That of the current component, else of the current group; null if there is no group.
    VDFamosScaling* CurrentScaling();

    VDFamosFields fields_;
    std::int64_t fileSize_;
    VDFamosHeader& header_;
    VDFamosGroup* group_ = nullptr;
    VDFamosComponent* component_ = nullptr;
    int keyNumber_ = 0;
    VDString previousKey_;
};
