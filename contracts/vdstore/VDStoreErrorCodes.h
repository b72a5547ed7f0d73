#pragma once

/// The codes of `vdstore`'s own error reports. Their texts are plain English and stand in the platform library.
namespace VDStoreError {
constexpr int NoChannelNumber = -66561;  ///< no channel of a mapper has this number
constexpr int NoChannelIndex = -66562;   ///< a mapper has no channel at this index, or it has no number
}  // namespace VDStoreError
