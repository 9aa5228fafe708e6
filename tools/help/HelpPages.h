// The help pages made from the program's own tables: one page per settings
// help topic, listing the variables of its section as the settings page
// shows them, and one per layers help topic, listing the application's
// default layers. scripts/help-pages.sh writes them into
// resources/help/standards-desk/; the hand-written pages live beside them.
#pragma once

#include <map>
#include <string>

// "X.htm" of a topic "::/X.htm"; the text itself when it has no "::/".
std::wstring HelpTopicPage(const std::wstring& topic);

// Every generated page: file name ("Scale_Factors_Dialog_Box1.htm") to its
// UTF-8 text.
std::map<std::wstring, std::string> GeneratedHelpPages();

// `text` with & < > " as HTML entities, in UTF-8.
std::string HtmlText(const std::wstring& text);
