#pragma once

// What keeps the memory of a process that handles keys out of files and other programs, and its
// files apart from its streams.

namespace velarc {

// From here on this process leaves no core file, nor is one handed to the system's crash collector,
// and other programs of the same user cannot attach to it or read its memory.
//
// Called at the beginning of main(). A program that this process starts leaves no core file either,
// unless it raises its own limit.
void keepMemoryPrivate();

// Standard streams that the parent has closed are empty, and take nothing: no file that is opened
// later gets their numbers, and with them what is printed. Called at the beginning of main().
void holdStandardStreams();

} // namespace velarc
