#pragma once

class frmglowna;

// Makes each area of the main window answer to the logged-in user's right: the commands
// of an area the user may not use are disabled (menus, toolbar and shortcuts alike), and
// follow every login, logout and change of rights. A command not yet part of this version
// stays disabled whatever the rights.
void guardByRights(frmglowna &main);
