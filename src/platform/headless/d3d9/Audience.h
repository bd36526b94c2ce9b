#pragma once

namespace headless {

// Whether anybody looks at what the device draws: in a frame file, or by code that reads a drawn
// picture back. It is decided once, where the program starts; until then somebody looks.
//
// Without an audience every call is checked, counted and refused as ever, but no drawn picture gets
// its pixels. The device marks such pictures as blank (`PixelBuffer::isBlank`). No call gives out the
// pixels of a blank picture: reading one is refused by name, as something that is not modelled, so that
// a wrong decision shows.

/// Nobody looks from here on.
void DismissAudience();
/// For tests: somebody looks again. Pictures that are blank stay so.
void RecallAudience();
bool HasAudience();

} // namespace headless
