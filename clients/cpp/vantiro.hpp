/**
 * @file vantiro.hpp
 * @brief The library from C++17. Header-only; no JDK is needed.
 *
 * Values and types for what most programs do:
 *
 * @code
 * const vantiro::library grid;
 * vantiro::run run(grid);
 * run.name("squares").jobs(4).executable("echo $((VANTIRO_JOB * VANTIRO_JOB)) | tee square");
 * run.receive([](std::string_view line) { std::cout << line << '\n'; });
 * run.execute();
 * for (const std::filesystem::path &file : run.files()) use(file);
 * @endcode
 *
 * and any function of `vantiro.h` with vantiro::call, vantiro::text and vantiro::list:
 *
 * @code
 * vantiro::call(vantiro_peach_postProcessed, run.handle(), 1);
 * @endcode
 *
 * Failures are thrown as vantiro::error. Strings are in Java's modified UTF-8 (see @ref
 * strings_in).
 */
#ifndef VANTIRO_HPP
#define VANTIRO_HPP

#include <vantiro/call.hpp>
#include <vantiro/library.hpp>
#include <vantiro/project.hpp>
#include <vantiro/receiver.hpp>
#include <vantiro/run.hpp>

#endif
