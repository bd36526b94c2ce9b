#pragma once

/// Exit status of a worker that ran out of its memory.
inline constexpr int kWorkerOutOfMemory = 77;
/// Number of the descriptor of the page with its ticket; see JobTicket.h.
inline constexpr int kWorkerTicket = 5;
/// Number of a descriptor that workers keep open as long as they live.
inline constexpr int kWorkerHeld = 4;
/// What a worker says when its engine has started: whether it can be given its next job ahead.
inline constexpr const char* kWorkerReady = "";
inline constexpr const char* kWorkerReadyForTwo = "2";
/// Exit status of a worker whose engine does not start.
inline constexpr int kWorkerNoEngine = 78;

/// The life of a worker process: takes its setup, then one job after the other, from the socket, and
/// answers each with a result. Standard error is a file in memory, which is read after each job. Gives the
/// exit status.
int RunWorker(int socket);
