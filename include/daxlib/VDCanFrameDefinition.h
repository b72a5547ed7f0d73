#pragma once

#include "daxlib/DaxApi.h"
#include "daxlib/VDCanChanDefinition.h"

/// One frame of a CAN database with its channels, which it owns. Copies are deep.
class DAX_API VDCanFrameDefinition
{
public:
    VDCanFrameDefinition();
    virtual ~VDCanFrameDefinition();
    VDCanFrameDefinition(const VDCanFrameDefinition& other);
    VDCanFrameDefinition& operator=(const VDCanFrameDefinition& other);

    /// @param id           as written in the database: an extended id has bit 31 set
    /// @param transmitter  name of the node that sends it; empty if none does
    void Init(unsigned long id, const VDString& name, int numBytes, const VDString& transmitter);

    unsigned long GetFrameId() const;
    const VDString& GetFrameName() const;
    int GetNumBytes() const;
    const VDString& GetTransmitterName() const;

    void SetDescription(const VDString& description);
    const VDString& GetDescription() const;
    /// "P" periodic, "P+E" periodic and on event, "E" on event, or the database's own default text.
    void SetTransmissionMode(const VDString& mode);
    const VDString& GetTransmissionMode() const;
    /// The period in the unit of the database; 0 if it gives none.
    void SetSamplePeriod(double period);
    double GetSamplePeriod() const;

    /// Takes ownership; null is ignored.
    void AppendChan(VDCanChanDefinition* chan);
    void ClearChans();
    int GetChanDefinitionCount() const;
    /// A channel in file order, which stays the frame's; null for an index out of range.
    VDCanChanDefinition* GetChanDefinition(int index) const;

private:
    struct State;
    std::unique_ptr<State> state_;
};
