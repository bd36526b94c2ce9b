#pragma once

/// Exit status of a worker that ran out of its memory.
inline constexpr int kWorkerOutOfMemory = 77;
/// Exit status of a worker whose engine does not start.
inline constexpr int kWorkerNoEngine = 78;

/// The life of a worker process: takes its setup, then one job after the other, from the socket, and
/// answers each with a result. Standard error is a file in memory, which is read after each job. Gives the
/// exit status.
int RunWorker(int socket);
