// What LeakSanitizer leaves out in the sanitizer build of the widget and end-to-end tests.
//
// Only allocations made inside the system's font library (fontconfig, which Qt asks for fonts
// when text is drawn or a PDF is printed) and kept by it for the life of the process: 288 bytes
// in two blocks, the same in every run. An allocation that any project function makes is
// never covered, because the pattern names the library's file only.
#if defined(__SANITIZE_ADDRESS__)
extern "C" const char* __lsan_default_suppressions();
extern "C" const char* __lsan_default_suppressions() {
    return "leak:libfontconfig.so\n";
}
#endif
