// The FastCGI responder: started by a web server with a listening socket as
// its standard input, the program serves one request after another through
// the same handlers a CGI process runs once.
#ifndef FRAME_FASTCGI_H
#define FRAME_FASTCGI_H

// True when standard input is a listening socket (the FastCGI way of
// telling a responder from a CGI process, which has a pipe, a connected
// socket or nothing there).
bool fastcgiStarted(void);

// Serves requests until the web server stops the process: each one with the
// request's parameters as the environment and its streams as standard
// input and output. `serve` answers one request and returns the exit status
// a CGI process would have ended with. Returns the process's exit status.
int fastcgiServe(int (*serve)(void));

#endif
