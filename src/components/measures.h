#pragma once

#include <cstdint>

#include "platform/cstring.h"

namespace loom {

// Distance in metres between two positions in degrees on the WGS-84 ellipsoid; within 0.1 % up to 50 km.
double CalDistance(double longitude1, double latitude1, double longitude2, double latitude2);

// Equal within 1e-6.
bool IsEqualDouble(double a, double b);

// Key of a TD-SCDMA carrier and cell parameter id.
CString ComposeFreqCPI(std::int32_t uarfcn, std::int32_t cell_parameter_id);

// Whether the whole text is a decimal number.
bool IsNumber(const CString& text);

}  // namespace loom
