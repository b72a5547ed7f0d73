#pragma once

#include "vdstore/LQDataManager.h"

/// A data object in a file whose writer is stopped anywhere, whose disk is full, or of which bytes go bad.
struct ObjectScenario
{
    /// Opens the object or makes it.
    LQObject* (*adopt)(LQDataManager& manager, Z4Storage* storage);
    /// Turns the object from one version, counted from 0 for a new one, into the next.
    bool (*write)(LQObject& object, int version);
    /// Whether the object holds exactly this version.
    bool (*holds)(LQObject& object, int version);
    int versions = 4;
};

/// A file as a system of the other byte order would have written it: with its header, and data that mirror ours.
std::string OfOtherByteOrder(std::string file);

/// Expects that exactly the last version that was flushed is there wherever a writer is stopped, whatever the disk makes of
/// what wasn't synchronised; that a failed operation is recorded and does no harm; and that no bad byte goes unseen.
void ExpectSurvivesFaults(const ObjectScenario& scenario);
