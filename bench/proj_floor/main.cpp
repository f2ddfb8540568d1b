// The in-memory floor of a conversion: PROJ's operation between two systems
// over arrays of points, with no text read or written. One thread, then the
// points split across N threads (each with its own context and operation,
// built before the clock starts).
//
//   bench_proj_floor SOURCE TARGET POINTS_FILE [THREADS] [REPEAT]
//
// SOURCE and TARGET are systems as cs2cs takes them; with TARGET "-", SOURCE
// is a PROJ pipeline run as it is. POINTS_FILE holds "x y [z]" per line in
// PROJ's axis order for the two systems as given (the file cs2cs reads). Prints the seconds of the fastest
// of REPEAT runs for one thread and for THREADS threads (default: all cores).

#include <proj.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <sstream>
#include <string>
#include <thread>
#include <vector>

namespace {

struct Operation
{
    PJ_CONTEXT* context = nullptr;
    PJ* pj = nullptr;
};

Operation build(const char* source, const char* target)
{
    Operation op;
    op.context = proj_context_create();
    proj_context_set_enable_network(op.context, 0);
    if (std::strcmp(target, "-") == 0) {
        op.pj = proj_create(op.context, source);
        return op;
    }
    PJ* raw = proj_create_crs_to_crs(op.context, source, target, nullptr);
    if (raw) {
        op.pj = proj_normalize_for_visualization(op.context, raw);
        proj_destroy(raw);
    }
    return op;
}

void run(PJ* pj, double* x, double* y, double* z, size_t n)
{
    proj_trans_generic(pj, PJ_FWD, x, sizeof(double), n, y, sizeof(double), n, z, z ? sizeof(double) : 0,
                       z ? n : 0, nullptr, 0, 0);
}

} // namespace

int main(int argc, char** argv)
{
    if (argc < 4) {
        std::fprintf(stderr, "usage: %s SOURCE TARGET POINTS_FILE [THREADS] [REPEAT]\n", argv[0]);
        return 2;
    }
    const unsigned hardware = std::max(1u, std::thread::hardware_concurrency());
    const unsigned threads = argc > 4 ? unsigned(std::max(1, std::atoi(argv[4]))) : hardware;
    const int repeat = argc > 5 ? std::max(1, std::atoi(argv[5])) : 3;

    std::vector<double> x0, y0, z0;
    bool withZ = true;
    {
        std::ifstream in(argv[3]);
        std::string line;
        while (std::getline(in, line)) {
            const char* p = line.c_str();
            char* end = nullptr;
            const double x = std::strtod(p, &end);
            if (end == p)
                continue;
            p = end;
            const double y = std::strtod(p, &end);
            if (end == p)
                continue;
            p = end;
            const double z = std::strtod(p, &end);
            if (end == p)
                withZ = false;
            x0.push_back(x);
            y0.push_back(y);
            z0.push_back(end == p ? 0.0 : z);
        }
    }
    const size_t n = x0.size();
    if (n == 0) {
        std::fprintf(stderr, "no points in %s\n", argv[3]);
        return 2;
    }

    std::vector<Operation> ops;
    for (unsigned i = 0; i < threads; ++i) {
        ops.push_back(build(argv[1], argv[2]));
        if (!ops.back().pj) {
            std::fprintf(stderr, "PROJ cannot convert from \"%s\" to \"%s\"\n", argv[1], argv[2]);
            return 2;
        }
    }

    const auto timed = [&](unsigned used) {
        double best = 1e300;
        for (int r = 0; r < repeat; ++r) {
            std::vector<double> x = x0, y = y0, z = z0;
            const auto start = std::chrono::steady_clock::now();
            if (used == 1) {
                run(ops[0].pj, x.data(), y.data(), withZ ? z.data() : nullptr, n);
            } else {
                std::vector<std::thread> workers;
                const size_t per = (n + used - 1) / used;
                for (unsigned t = 0; t < used; ++t) {
                    const size_t first = std::min(n, t * per);
                    const size_t count = std::min(n, first + per) - first;
                    workers.emplace_back([&, t, first, count] {
                        run(ops[t].pj, x.data() + first, y.data() + first, withZ ? z.data() + first : nullptr, count);
                    });
                }
                for (std::thread& w : workers)
                    w.join();
            }
            const std::chrono::duration<double> elapsed = std::chrono::steady_clock::now() - start;
            best = std::min(best, elapsed.count());
        }
        return best;
    };

    std::printf("points: %zu\n", n);
    std::printf("floor 1 thread: %.3f s\n", timed(1));
    std::printf("floor %u threads: %.3f s\n", threads, timed(threads));
    for (Operation& op : ops) {
        proj_destroy(op.pj);
        proj_context_destroy(op.context);
    }
    return 0;
}
