#pragma once

namespace navro {

// Makes SIGINT, SIGTERM and SIGHUP end the event loop (QCoreApplication::quit) instead of the
// process, so that a terminal's Ctrl+C, a session's logout or a closed terminal runs the same
// shutdown as the quit action, and ends with status 0. Defined by the platform code.
void quitOnTerminationSignals();

// A write past the file-size limit (ulimit -f) fails with EFBIG and is reported like a full disk,
// instead of ending the process unsaved (SIGXFSZ's default).
void reportOversizedWrites();

} // namespace navro
