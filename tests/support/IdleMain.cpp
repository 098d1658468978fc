// A program that does nothing for a minute: a test copies it to the name of an
// application's process to see that a running application is left alone.
#include <windows.h>

int wmain() {
  Sleep(60000);
  return 0;
}
