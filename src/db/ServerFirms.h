#pragma once

#include <QString>
#include <QStringList>

// Firms kept on a database server as this workstation knows them: the addresses opened
// here, listed beside the firm files, and the local folder that stands in for the folder
// of a firm file (bank files and saved reports go there, never to the address).
namespace ServerFirms {

// The addresses of server firms opened on this workstation, in the order first opened.
QStringList remembered();
// Adds `address` in its usual form unless it is listed already.
void remember(const QString &address);
// Takes `address` off the list (the firm on the server stays as it is).
void forget(const QString &address);
// The name the firm at `address` gave itself when last open here (empty when never seen):
// the firm list shows it without reaching for a server that may be down.
QString rememberedName(const QString &address);
// Keeps `name` as the firm's name for the list; an address not listed is left alone.
void rememberName(const QString &address, const QString &name);
// Whether two firm names mean the same firm: one server firm written in two forms, or the
// same text.
bool same(const QString &a, const QString &b);

// Where files made for the firm `firm` (a file path or an address) go, with a final "/":
// the folder of a firm file, or for a server firm a folder of its own under the databases
// folder (made when missing), so that two firms never share a bank file.
QString localFolder(const QString &firm);
// The firm's place as the user reads it: a file's path in the system's form, an address
// as written.
QString shown(const QString &firm);

} // namespace ServerFirms
