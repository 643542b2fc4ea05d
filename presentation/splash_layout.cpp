#include "presentation/splash_layout.h"

#include "tavro_version.h"

const SplashFeature kSplashFeatures[kSplashFeatureCount] = {
    {L"\u2022", L"Scintilla engine - syntax highlighting for 15+ languages"},
    {L"\u2022", L"Regex search, Find & Replace, Markdown preview"},
    {L"\u2022", L"PDF & HTML export, Print Preview, Page setup"},
    {L"\u2022", L"6 themes - Dark, Light, Azure, Green, Night, Sepia"},
    {L"\u2022", L"Transparency, Typewriter Sound, Recent Files, Auto-save"},
    {L"\u26A1", L"Built-in AI assistant - Groq, Cloudflare AI, Mistral AI"},
    {L"\U0001F464", L"Profile Manager - Multiple instances and AI profiles"},
};

std::wstring SplashVersionLine() { return std::wstring(L"Version ") + kTavroVersion + L"  |  64-bit  |  AI Edition"; }

int NextSplashAlpha(int alpha) { return alpha - kSplashFadeStep; }

bool SplashFadeEnds(int alpha) { return alpha <= kSplashFadeStep; }
