#pragma once

#include <QString>

#include <Vk_Records/Database.h>

/// Gives the program its name, its icon, and Russian words and dates in the windows of Qt itself.
void PrepareApplication();

/// Takes colours for a desktop that passes none on: "dark", or one with a high contrast:
/// "black-on-white", "white-on-black", "yellow-on-black". False for another name.
bool TakeColours(QStringView aName);

/// Opens the database and asks again as long as the user wants to; false if the user gives up.
bool OpenRecords(const QString &aDatabase, Vk_Records::NewDatabase aNew);
