// The flash program's screens (filled in once the flash program has its main form).
int RunFlashScreenTests(int, char**) {
  return 0;
}
