#pragma once

// The line of text over each frame.

constexpr int kBannerSize = 39; ///< bytes, with the NUL

/// The banner as the program stores it: each byte is one above the letter's, so that the line cannot be
/// read or changed in the program's file.
extern const char kStoredBanner[kBannerSize];

/// The banner, a format text with one double: frames per second.
void ReadBanner(char (&bannerOut)[kBannerSize]);

/// Draws it at the bottom right, over the frame, between BeginScene and EndScene.
void DrawBanner(const char (&banner)[kBannerSize], double framesPerSecond);
