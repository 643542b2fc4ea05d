// The Help window's manual: eleven topics, each an array of lines in the
// window's mark-up ("##" heading, empty gap, the link marker, paragraph),
// ended by a null entry. Built into the program.
#pragma once

struct HelpTopic {
  const wchar_t* title;
  const wchar_t* const* lines;
};

extern const HelpTopic kHelpTopics[11];

// The About topic's link: its label and where it leads.
extern const wchar_t kHelpLinkLabel[];
extern const wchar_t kHelpLinkTarget[];
