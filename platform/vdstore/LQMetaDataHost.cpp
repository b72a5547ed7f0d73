#include "vdstore/LQMetaDataHost.h"

LQMetaDataHost::LQMetaDataHost()
{
    GetMapper()->SetChannelNumber(0, GetMapper()->Append());
}

LQMetaDataHost::~LQMetaDataHost() = default;
