#pragma once

#include "documents/FirmData.h"

#include <QList>
#include <QString>
#include <QTemporaryDir>

// Benchmarks run offscreen in a private home; call before the application object.
void prepareBenchHome(const QTemporaryDir &home);

// A firm with a full address, NIP and one well-stocked account.
FirmData benchFirm();

// After the application object: console dialogs and a new firm file in `home`, opened and
// holding `firm` with every account. False when the file cannot be made.
bool openBenchFirm(const QTemporaryDir &home, const FirmData &firm);

// Stores `count` documents of every kind, names and titles of usual lengths; their ids.
QList<qint32> fillDocuments(int count);

// Copies the stored documents over and over until the firm holds `total`; false on failure.
bool growDocuments(int total);
