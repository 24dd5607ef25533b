// The floor of a process that links the library: one that links libcurl alone.
#include <curl/curl.h>
#include <unistd.h>

int main(int count, char**) {
  if (count > 1) curl_global_init(CURL_GLOBAL_DEFAULT);
  _exit(0);
}
