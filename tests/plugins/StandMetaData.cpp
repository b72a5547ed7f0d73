#include "StandTimeSeries.h"

#include "vdstore/LQChannelMapper.h"

int StandTimeSeries::LoadMetaData(LQChannelMapper** mapper)
{
    *mapper = nullptr;
    if (!Enter("LoadMetaData"))
        return 0;
    if (!HasCapability(DaxTimeSeries::KeepsMetaData))
        return StandFail(script_, "StandTSLoadMetaData");
    if (!mapper_) {
        mapper_ = std::make_shared<LQChannelMapper>(nullptr);
        for (int index = 0; index < static_cast<int>(test_.channels.size()); ++index) {
            int number = 0;
            VDString title;
            FIDGetChanNumber(id_, index, &number);
            FIDGetChanTitle(id_, index, &title);
            LQChannelEntry* entry = mapper_->Append();
            mapper_->SetChannelNumber(number, entry);
            mapper_->SetChanTitle(title, entry);
            if (script_.Has("offset"))
                mapper_->AdoptMetaDataSet("Offset", nullptr, index)->PutDouble("OffsetValue", script_.Number("offset"));
        }
    }
    *mapper = mapper_.get();
    return 1;
}

int StandTimeSeries::AddLegacyMetaData(LQChannelMapper*)
{
    return Enter("AddLegacyMetaData");
}
