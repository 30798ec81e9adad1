#ifndef CIFWARD_LOGOPTIONS_H
#define CIFWARD_LOGOPTIONS_H

// Consumes the log options from the command line before anything else reads it:
//   -log              raise the debug level by one (may be repeated)
//   -loglevel <n>     set the debug level to n
//   -logfile <path>   send all three log channels to a new file at path
// They act in command-line order. argv is compacted in place: argv[0] stays, every other
// argument keeps its order, and on return argv[argc] is null. Problems are reported as warnings
// and the run goes on.
void processLogOptions(int& argc, char** argv);

#endif
