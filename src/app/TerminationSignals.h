#pragma once

namespace navro {

// Makes SIGINT and SIGTERM end the event loop (QCoreApplication::quit) instead of the process,
// so that a terminal's Ctrl+C or a session's logout runs the same shutdown as the quit action.
// Defined by the platform code.
void quitOnTerminationSignals();

} // namespace navro
