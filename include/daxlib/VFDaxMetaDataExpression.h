#pragma once

#include "daxlib/DaxApi.h"
#include "vdbase/VDArray.h"
#include "vdbase/VDString.h"

class LQChannelMapper;
class Z4Property;

/// Metadata by keyword: single items, texts with keywords in them, and arithmetic over items.
///
/// A keyword is `[dataN.][chanN. | chancurrent. | chan?(expression).][test.][set.]item`. Its words have no case; the name of
/// a set has none either, that of an item has.
///
/// - `dataN.` takes the N-th of `dataMappers`, counted from 1, and its channel in `dataChannels` unless that is negative.
/// - `chanN.` takes the channel of that number, `chancurrent.` the one of the argument `channel`, `chan?(expression).` the
///   first channel for which the expression is true. The expression ends at the first ")".
/// - `test.` takes the metadata of the test as a whole. Spelled with capitals it may also be a set of that name, which is
///   looked for first.
/// - `set.` looks in sets of that name only. The first dot always ends it, so that no item with a dot in its name is found.
///
/// Without a selector the argument `channel` says where to look: an index of the mapper, -1 for every channel in the order
/// of their indexes, -2 for the test as a whole. A selector that selects nothing finds nothing, in the test neither.
///
/// Expressions are those of `vdbase/VDCalculator.h`, with `#keyword#` for a variable.
///
/// Every function gives true if nothing went wrong, which doesn't mean that something was found. Mappers stay the caller's
/// and must not change during a call; a null one fails, as a null result does. No locks are taken. Reports: -327702 for
/// "chan?(" without a ")", -327703 for a bad expression in it, on top of what is wrong where, both of
/// `VFDaxGetMetaDataItem`.

/// Finds an item.
/// @param item          receives the item, which is its set's, or null; it may be undefined
/// @param searchGlobal  other than 0 looks in the metadata of the test if the channels have no such item
/// @param dataMappers   what `dataN.` selects from; may be null, and so may be its elements
/// @param dataChannels  an index for each of these mappers; may be null or shorter
DAX_API bool VFDaxGetMetaDataItem(LQChannelMapper* mapper, const VDString& keyword, int channel, Z4Property** item,
                                  char searchGlobal, VDArray<LQChannelMapper*>* dataMappers,
                                  VDArrayWithSort<long>* dataChannels);

/// Replaces each `#keyword#` of a text by the item's value as text, items of the test included. A "#" inside brackets
/// belongs to the keyword. An undefined item gives its own text for that; `#TMin#`, `#TMax#` and `#TAbs#`, where there are
/// no such items, the time in seconds that "PMin", "PMax" or "PAbs" is at "SampleRate" and "BaseTime". Arguments of
/// `var_exist(#...#)` stay as they are, and a "#" that has no partner stays, too. If the text has "eval(" in it, texts that
/// are no numbers are put in quotes, as an expression has them.
/// @param failOnUnresolved   other than 0 fails with -327696 if an item is not found
/// @param result             empty after a failure; may be `text`
/// @param keepUnresolved     other than 0 leaves a keyword whose item is not found as it is; otherwise it vanishes
/// @param quoteAfterBracket  other than 0 puts a text that is no number in quotes behind a "(", too
DAX_API bool VFDaxEvaluateStringFromMeta(VDString& text, LQChannelMapper* mapper, int channel, char failOnUnresolved,
                                         VDString* result, char keepUnresolved, VDArray<LQChannelMapper*>* dataMappers,
                                         VDArrayWithSort<long>* dataChannels, char quoteAfterBracket);

/// Gives the value of an item, or else of an expression in the first channel in which it can be evaluated, or else in the
/// metadata of the test.
/// @param expression  a keyword, with or without "#" around it, or an expression
/// @param result      the item's value as text, empty if it is undefined; of an expression a number of 10 digits. Empty
/// after
///                    a failure (-327697, on top of what is wrong where)
/// @param type        receives the type of the item (`Z4PropertyType`) if it is defined, of an expression always that of a
///                    string; may be null
DAX_API bool VFDaxEvaluateValueFromMeta(VDString& expression, LQChannelMapper* mapper, int channel, VDString* result,
                                        int* type);

/// Gives the number that an item holds or its text is, or else the value of an expression in the first channel in which it
/// can be evaluated, or else for the argument `channel` as a whole.
/// @param result  untouched after a failure: -327697, also for an item that is undefined or no number
DAX_API bool VFDaxEvaluateDoubleFromMeta(VDString& expression, LQChannelMapper* mapper, int channel, double* result);
