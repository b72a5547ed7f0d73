#pragma once

#include "vdstore/LQObject.h"

/// A data object without data: a mapper's metadata in a node of a file, or, for a derived class, in memory. A new one has
/// one channel of number 0.
class VDSTORE_API LQMetaDataHost : public LQObject
{
public:
    ~LQMetaDataHost() override;

protected:
    LQMetaDataHost();

private:
    friend class LQDataManager;
};
