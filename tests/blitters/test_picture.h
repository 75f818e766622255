// An original test picture for the scalers: a small pixel-art landscape drawn in
// code (sky gradient, sun, hills with diagonal edges, a dithered tree, a sprite,
// 1-pixel lettering and a colour ramp), so every family meets flat areas, lines
// at several slopes, gradients, dithering and single-pixel detail.
#pragma once

#include <cstdint>
#include <vector>

constexpr int kTestPictureWidth = 96;
constexpr int kTestPictureHeight = 72;

// RGB 5-5-5 from three components 0..31.
constexpr uint16_t TestRGB(int r, int g, int b)
{
    return (uint16_t)((r << 10) | (g << 5) | b);
}

// The picture, row after row, kTestPictureWidth * kTestPictureHeight pixels.
std::vector<uint16_t> MakeTestPicture();
