# Reading and writing protocol text, compared with other libraries and limits. Under Wine the other libraries and Google
# Benchmark are not available.
add_library(MorquilBenchText STATIC contest.cpp corpus.cpp $<IF:$<BOOL:${WIN32}>,contest_own.cpp,contest_google.cpp>)
target_link_libraries(MorquilBenchText PUBLIC MorquilOptions MorquilSimulator PRIVATE MorquilBenchSupport)
if(NOT WIN32)
    find_package(benchmark REQUIRED)
    target_link_libraries(MorquilBenchText PRIVATE benchmark::benchmark)
endif()

morquil_benchmark(parsing parsing.cpp literal_parser.cpp
    $<IF:$<BOOL:${WIN32}>,peer_parsers_none.cpp,peer_parsers_native.cpp;peer_http.cpp;peer_mpd.cpp;peer_redis.cpp>
    naive_parser.cpp plain_blocks.cpp)
target_link_libraries(morquil-bench-parsing PRIVATE MorquilBenchText)

morquil_benchmark(writing writing.cpp $<IF:$<BOOL:${WIN32}>,peer_writers_none.cpp,peer_writers_native.cpp>)
target_link_libraries(morquil-bench-writing PRIVATE MorquilBenchText)

if(NOT WIN32)
    find_library(MORQUIL_HTTP_PARSER http_parser REQUIRED)
    find_package(PkgConfig REQUIRED)
    pkg_check_modules(mpdclient REQUIRED IMPORTED_TARGET libmpdclient)
    pkg_check_modules(hiredis REQUIRED IMPORTED_TARGET hiredis)
    target_link_libraries(morquil-bench-parsing PRIVATE
        ${MORQUIL_HTTP_PARSER} PkgConfig::mpdclient PkgConfig::hiredis)
    find_package(fmt REQUIRED)
    target_link_libraries(morquil-bench-writing PRIVATE fmt::fmt-header-only)
endif()
