#pragma once

namespace kovanix {

class RuntimeError;

// Message boxes that several screens show. Each waits for its answer.

/// Asks whether the program is to be closed; No is the default. @return whether the answer was Yes
bool askToCloseProgram();

/// Tells that there is no connection to the database.
void tellNoDatabase();
/// The same with what the database said.
void tellDatabaseFailure(const RuntimeError& error);

/// Tells that nothing was printed, with what the printer said.
void tellPrinterFailure(const RuntimeError& error);

}  // namespace kovanix
