// The start screen's fixed look and the arithmetic of its fade.
#pragma once

#include <windows.h>

#include <string>

constexpr int kSplashWidth = 500;
constexpr int kSplashHeight = 320;
constexpr int kSplashFadeStep = 18;  // alpha taken off per fade tick

constexpr COLORREF kSplashBackground = RGB(0x1E, 0x1E, 0x2E);
constexpr COLORREF kSplashAccent = RGB(0x7C, 0x6F, 0xED);
constexpr COLORREF kSplashFrame = RGB(0x31, 0x32, 0x44);
constexpr COLORREF kSplashTitle = RGB(0xF5, 0xC2, 0xE7);
constexpr COLORREF kSplashMuted = RGB(0x7F, 0x84, 0x9C);
constexpr COLORREF kSplashVersion = RGB(0xA6, 0xE3, 0xA1);
constexpr COLORREF kSplashFeatureText = RGB(0xCD, 0xD6, 0xF4);

struct SplashFeature {
  const wchar_t* mark;
  const wchar_t* text;
};

constexpr int kSplashFeatureCount = 7;
extern const SplashFeature kSplashFeatures[kSplashFeatureCount];

// "Version " and the program's version, with the build's word size.
std::wstring SplashVersionLine();

// The alpha after one fade tick.
int NextSplashAlpha(int alpha);
// The fade is over once the alpha is no longer above one step.
bool SplashFadeEnds(int alpha);
