#pragma once

/// What `main` does if memory runs out where nothing else says so: names the files of the command line on standard
/// error, after the program's name, without asking for memory itself. Returns `status`.
int EndWithoutMemory(const char* program, int count, const char* const* values, int status);

/// The same, at once, if memory runs out in a library's function that promises not to throw, so that nobody can
/// catch it. Other ends without a catch stay as they are. The texts outlive the process's work.
void PrepareEndWithoutMemory(const char* program, int count, const char* const* values, int status);
