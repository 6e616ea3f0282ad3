include(HeaderLibrary)
use_installed_headers(CLI11::CLI11 CLI CLI/CLI.hpp libcli11-dev)
set(CLI11_FOUND TRUE)
