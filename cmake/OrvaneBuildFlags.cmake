# Compile flags shared by every target of the project. Each target links orvane_build_flags privately,
# so nothing of this reaches those who consume the installed package.
add_library(orvane_build_flags INTERFACE)

target_compile_options(orvane_build_flags INTERFACE
  -Wall -Wextra -Wpedantic -Wshadow -Wnon-virtual-dtor -Woverloaded-virtual -Wcast-align
  -Wformat=2 $<$<CXX_COMPILER_ID:GNU>:-Wduplicated-cond -Wlogical-op>)
if(ORVANE_WARNINGS_AS_ERRORS)
  target_compile_options(orvane_build_flags INTERFACE -Werror)
endif()

target_compile_definitions(orvane_build_flags INTERFACE
  QT_NO_CAST_TO_ASCII QT_NO_KEYWORDS QT_STRICT_ITERATORS QT_DEPRECATED_WARNINGS
  # The function's signature belongs to every log line, in release builds too.
  QT_MESSAGELOGCONTEXT)

# Each library names all it needs: none may count on what a program happens to bring along.
if(NOT ORVANE_SANITIZE)
  target_link_options(orvane_build_flags INTERFACE -Wl,--no-undefined)
endif()

if(ORVANE_SANITIZE)
  # Set for the whole directory tree so that no object escapes it.
  add_compile_options(-fsanitize=${ORVANE_SANITIZE} -fno-omit-frame-pointer -fno-sanitize-recover=all)
  add_link_options(-fsanitize=${ORVANE_SANITIZE})
  if(ORVANE_SANITIZE MATCHES undefined)
    # What a test itself does with numbers is not what is looked at here, and takes half of the compiler's time.
    set(ORVANE_TEST_OPTIONS -O0 -fno-sanitize=undefined)
  endif()
endif()
