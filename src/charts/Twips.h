#pragma once

namespace vortan {

constexpr double kTwipsPerInch = 1440;
constexpr int kScreenPixels = 96;  ///< to the inch: what a line of one pixel means on paper and in files
constexpr double kTwipsPerPixel = kTwipsPerInch / kScreenPixels;

}  // namespace vortan
