// SPDX-License-Identifier: MIT
// Notices that a file has changed.

#include <md5.h>

#include <cstdio>
#include <fstream>

//! [digest]
std::string digestOf(std::string const& path)
{
    std::ifstream file(path, std::ios::binary);
    return MD5(file).toString(); // reads to the end, and closes
}
//! [digest]

int main()
{
    std::ofstream("notes.txt") << "kept";
    std::string const before = digestOf("notes.txt");
    std::ofstream("notes.txt", std::ios::app) << " and changed";
    std::string const after = digestOf("notes.txt");
    std::printf(
        "%s\n%s\n%s\n", before.c_str(), after.c_str(), before == after ? "the same" : "changed");

    //! [published]
    // Not the published MD5, whose digest of nothing is d41d8cd98f00b204e9800998ecf8427e.
    std::printf("of nothing: %s\n", MD5().toString().c_str());
    //! [published]
}
