#pragma once

/// Asks the system for the pages of all memory that the heap has grown by since the last call, at once: it
/// makes a run of pages in less time than one page after the other as they are touched. Call it from time
/// to time while a large scene is read. Does nothing where the system cannot.
void MakeHeapPages();
