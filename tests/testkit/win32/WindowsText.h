// Path and text helpers of the Windows test kit (texts are UTF-8 in the tests, UTF-16 at the API).
#pragma once

#include <string>

namespace testkit {

std::wstring wide(const std::string& text);
std::string narrow(const std::wstring& text);
// The file of the module that holds `address` (null: the executable); empty when unknown.
std::string moduleFile(const void* address);
std::string directoryOf(const std::string& path);
std::string fileNameOf(const std::string& path);
// A new directory "<temporary directory>\<stem><pid>-<n>"; empty on failure.
std::string makeScratchDirectory(const char* stem);
void removeDirectory(const std::string& path);
bool writeFile(const std::string& path, const std::string& content);
// One argument quoted for a command line.
std::wstring quoted(const std::wstring& argument);

}  // namespace testkit
