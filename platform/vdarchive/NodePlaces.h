#pragma once

#include "CommitSlot.h"
#include "vdarchive/Z4Node.h"

#include <vector>

/// Where the parts of a node lie.
struct Z4Node::Places
{
    BlobRef content;  // as committed
    BlobRef table;    // the table of streams; a committed node always has one
    BlobRef savedContent;
    BlobRef savedTable;
    std::vector<BlobRef> superseded;  // of streams that were removed
};
