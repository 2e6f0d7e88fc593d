#pragma once

#include <QString>

// The program's fixed texts by number, shared by every window: button words (1-10),
// message titles (50-56), the printer message (80) and the validation texts (101-115).
// An unknown number gives empty text.
QString Msg(int id);
