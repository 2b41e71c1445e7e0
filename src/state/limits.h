#pragma once
#include <array>
#include <cstddef>

namespace tervale {

// Fixed limits of every case. Arrays are 1-based: element 0 stays unused.
inline constexpr int kMaxComponents = 20;
inline constexpr int kMaxTrays = 200;
inline constexpr int kMaxFeeds = 5;
inline constexpr int kMaxSideCuts = 5;
inline constexpr int kMaxTanks = 5;
inline constexpr int kMaxDataPoints = 50;
inline constexpr int kMaxMemoLines = 10;

// 1 MPa in mmHg; its reciprocal is the rounded factor 0.00013322 of ConvPressToBase.
inline constexpr double kMmHgPerMPa = 7506.380423;

using CompArray = std::array<double, kMaxComponents + 1>;
using Composition = CompArray;
using CompMatrix = std::array<CompArray, kMaxComponents + 1>;
using TrayArray = std::array<double, kMaxTrays + 1>;
using TrayCompMatrix = std::array<CompArray, kMaxTrays + 1>;  // [tray][component]

}  // namespace tervale
