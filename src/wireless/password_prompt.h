#pragma once

#include <string>

/// Asks for the network's password on standard output and reads a line from standard input. If that
/// is a terminal, its echo is off during the input. Returns the line without its end; the end of
/// the input also ends the line. The echo is restored on every exit, also if a signal ends the
/// program.
std::string promptForPassword();
