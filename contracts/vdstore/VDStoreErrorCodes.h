#pragma once

/// The codes of `vdstore`'s own error reports. Their texts are plain English and stand in the platform library.
namespace VDStoreError {
constexpr int NoChannelNumber = -66561;  ///< no channel of a mapper has this number
constexpr int NoChannelIndex = -66562;   ///< a mapper has no channel at this index, or it has no number
constexpr int NoObject = -66563;         ///< a storage has no data object of this name and kind
constexpr int WrongDataType = -66564;    ///< a channel's data have another type than the call's
constexpr int OutOfRange = -66565;       ///< a point or a count that can't be
constexpr int ContentDamaged = -66566;   ///< the stored description of a data object contradicts itself
constexpr int HalfWritten = -66567;      ///< a data object can't be saved, since it holds what is half written
}  // namespace VDStoreError
