#pragma once

#include <string>

// Why a file can't be read or written, as far as that can be seen from outside: one sentence that names the
// path in the machine's form, such as "There is no file /game/fire.Fx00a." Empty when nothing stands in the
// way that can be seen.
std::string ReadProblem(const std::string& sPath);
std::string WriteProblem(const std::string& sPath);
