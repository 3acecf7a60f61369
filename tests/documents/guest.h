// Comes first in every program of the documents that is built for the tests: what the program runs and reads goes
// through a guest that can be told to be hostile. The program is otherwise compiled as it stands.
#pragma once

#define bindFunction bindFunctionForGuest
#define getGlobal getGlobalOfGuest
#define runBytecode runBytecodeOfGuest
#define runBytecodeFile runBytecodeFileOfGuest
#define runScriptFile runScriptFileOfGuest
#define runScriptFromBytecodeFile runScriptFromBytecodeFileOfGuest
#define runScriptString runScriptStringOfGuest
