// The Windows program has no console to say anything on; its boxes and the log do.

#include "platform/WalkedFile.h"

WalkedFile::WalkedFile(const char*, const char*, const char*)
{}

WalkedFile::~WalkedFile() = default;

void WalkedFile::Converted()
{}

void ReportNoKeyword()
{}
