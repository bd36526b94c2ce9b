// The Windows program has no console; message boxes and the log report instead.

#include "platform/WalkedFile.h"

WalkedFile::WalkedFile(const char*, const char*, const char*)
{}

WalkedFile::~WalkedFile() = default;

void WalkedFile::Converted()
{}

void ReportNoKeyword()
{}
