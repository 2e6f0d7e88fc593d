#pragma once

#include <QString>

// The help page "zlecanki.htm" beside the program, shown in the desktop's browser at a
// topic: "Spis", "wystawianiedokumentow", "slownikkontrahentow", "danefirmy",
// "Przegladanieikorektadokumentow", "zaplatyterminowe", "zbiorowka", ...
namespace Help {

// The help page's path: beside the program, else in the installed data folder; empty
// when neither exists.
QString pagePath();
// Opens the help page at `topic`; tells the user when that is impossible.
void show(const QString &topic);
// Opens a web address in the browser, with the same two failure messages.
void openAddress(const QString &address);
// The maker's home page for the "Internet" command (settings key "AdresInternet").
QString homePage();

} // namespace Help
