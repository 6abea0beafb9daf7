// Shared by all peer benchmarks: the fixed scene, the fixed mesh, timing and the result lines.
// No dependency on any peer, so that our own benchmark can include it unchanged.
#pragma once
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <malloc.h>
#include <string>
#include <unistd.h>
#include <vector>

namespace peer {

// ---------------------------------------------------------------- scene
struct Leaf {
    float x, y, z, r, g, b;
};

struct Rng {
    uint64_t s;
    explicit Rng(uint64_t seed) : s(seed) {}
    float next() { // [0,1), 24 bits
        s = s * 6364136223846793005ull + 1442695040888963407ull;
        return float(s >> 40) * (1.0f / 16777216.0f);
    }
};

constexpr int kGroups = 100;
constexpr float kBox = 50.0f; // leaves lie in [-kBox,kBox]^3
constexpr float kHalf = 0.4f; // half edge of a leaf cube
constexpr int kView = 256; // square viewport
constexpr float kEyeZ = 200.0f; // eye (0,0,kEyeZ) looks along -z, 45 degrees, near 100, far 300
constexpr float kFovY = 45.0f, kNear = 100.0f, kFar = 300.0f;

// The target leaf is n/2: the only red one, in front of all others, under the view's centre.
inline size_t targetLeaf(size_t n) {
    return n / 2;
}

inline std::vector<Leaf> makeLeaves(size_t n) {
    std::vector<Leaf> v(n);
    Rng r(12345);
    for (auto& l : v) {
        l.x = (2 * r.next() - 1) * kBox;
        l.y = (2 * r.next() - 1) * kBox;
        l.z = (2 * r.next() - 1) * kBox;
        l.r = 0.0f;
        l.g = 0.3f + 0.7f * r.next();
        l.b = 0.3f + 0.7f * r.next();
    }
    v[targetLeaf(n)] = Leaf{0.1f, 0.07f, 55.0f, 1.0f, 0.0f, 0.0f};
    return v;
}

// Cube: 24 vertices (position, normal), 12 triangles, counter-clockwise seen from outside.
struct Mesh {
    std::vector<float> pos, nrm;
    std::vector<uint32_t> idx;
};

inline Mesh makeCube(float h = kHalf) {
    Mesh m;
    for (int a = 0; a < 3; ++a)
        for (int s = -1; s <= 1; s += 2) {
            int u = (a + 1) % 3, w = (a + 2) % 3;
            uint32_t base = uint32_t(m.pos.size() / 3);
            static int const q[4][2] = {{-1, -1}, {1, -1}, {1, 1}, {-1, 1}};
            for (int k = 0; k < 4; ++k) {
                float p[3], n[3] = {0, 0, 0};
                p[a] = float(s) * h;
                p[u] = float(q[k][0]) * h;
                p[w] = float(q[k][1]) * h;
                n[a] = float(s);
                m.pos.insert(m.pos.end(), p, p + 3);
                m.nrm.insert(m.nrm.end(), n, n + 3);
            }
            static const uint32_t f[6] = {0, 1, 2, 0, 2, 3}, b[6] = {0, 2, 1, 0, 3, 2};
            for (int k = 0; k < 6; ++k)
                m.idx.push_back(base + (s > 0 ? f[k] : b[k]));
        }
    return m;
}

// Terrain: 1000 x 500 cells = exactly 1e6 triangles over [-50,50]^2 (shifted so that the view's
// centre ray x=y=0 falls inside a triangle, not on an edge).
constexpr int kTx = 1000, kTy = 500;
inline Mesh makeTerrain() {
    Mesh m;
    m.pos.reserve(size_t(kTx + 1) * (kTy + 1) * 3);
    for (int j = 0; j <= kTy; ++j)
        for (int i = 0; i <= kTx; ++i) {
            float x = -50.0f + 100.0f * float(i) / kTx + 0.03f, y = -50.0f + 100.0f * float(j) / kTy + 0.05f;
            float z = 5.0f * std::sin(0.31f * x) * std::cos(0.27f * y) + 0.4f * std::sin(3.1f * x + 1.7f * y);
            m.pos.push_back(x);
            m.pos.push_back(y);
            m.pos.push_back(z);
            m.nrm.push_back(0);
            m.nrm.push_back(0);
            m.nrm.push_back(1);
        }
    m.idx.reserve(size_t(kTx) * kTy * 6);
    for (int j = 0; j < kTy; ++j)
        for (int i = 0; i < kTx; ++i) {
            uint32_t a = uint32_t(j * (kTx + 1) + i), b = a + 1, c = a + kTx + 2, d = a + kTx + 1;
            uint32_t t[6] = {a, b, c, a, c, d};
            m.idx.insert(m.idx.end(), t, t + 6);
        }
    return m;
}

// Ray against the triangles, brute force: the nearest hit's triangle and distance.
inline bool rayMesh(Mesh const& m, double const o[3], double const d[3], size_t& tri, double& t) {
    bool hit = false;
    t = 1e300;
    for (size_t k = 0; k + 2 < m.idx.size(); k += 3) {
        float const *A = &m.pos[3 * m.idx[k]], *B = &m.pos[3 * m.idx[k + 1]], *C = &m.pos[3 * m.idx[k + 2]];
        double e1[3] = {B[0] - A[0], B[1] - A[1], B[2] - A[2]}, e2[3] = {C[0] - A[0], C[1] - A[1], C[2] - A[2]};
        double p[3] = {d[1] * e2[2] - d[2] * e2[1], d[2] * e2[0] - d[0] * e2[2], d[0] * e2[1] - d[1] * e2[0]};
        double det = e1[0] * p[0] + e1[1] * p[1] + e1[2] * p[2];
        if (std::fabs(det) < 1e-15)
            continue;
        double inv = 1 / det, s[3] = {o[0] - A[0], o[1] - A[1], o[2] - A[2]};
        double u = (s[0] * p[0] + s[1] * p[1] + s[2] * p[2]) * inv;
        if (u < 0 || u > 1)
            continue;
        double q[3] = {s[1] * e1[2] - s[2] * e1[1], s[2] * e1[0] - s[0] * e1[2], s[0] * e1[1] - s[1] * e1[0]};
        double v = (d[0] * q[0] + d[1] * q[1] + d[2] * q[2]) * inv;
        if (v < 0 || u + v > 1)
            continue;
        double tt = (e2[0] * q[0] + e2[1] * q[1] + e2[2] * q[2]) * inv;
        if (tt > 0 && tt < t) {
            t = tt;
            tri = k / 3;
            hit = true;
        }
    }
    return hit;
}

// What the centre ray hits on the terrain: triangle number and z.
inline void terrainAnswer(Mesh const& m, size_t& tri, double& z) {
    double o[3] = {0, 0, kEyeZ}, d[3] = {0, 0, -1}, t = 0;
    if (!rayMesh(m, o, d, tri, t)) {
        std::fprintf(stderr, "terrain: no answer\n");
        std::exit(3);
    }
    z = kEyeZ - t;
}

// Leaves that a rectangle over the middle quarter of the view must hold (centre inside) and may hold
// (centre within a cube's circumscribed radius of it).
inline void boxAnswer(std::vector<Leaf> const& v, size_t& must, size_t& may) {
    must = may = 0;
    double k = std::tan(kFovY * 0.5 * M_PI / 180) * 0.5; // half width of the rectangle's frustum at distance 1
    for (auto& l : v) {
        double dist = kEyeZ - l.z, w = k * dist, r = kHalf * 1.7321 * 1.02;
        if (std::fabs(l.x) <= w && std::fabs(l.y) <= w)
            ++must;
        if (std::fabs(l.x) <= w + r * (1 + k) && std::fabs(l.y) <= w + r * (1 + k))
            ++may;
    }
}

// ---------------------------------------------------------------- timing
inline double clk(clockid_t c) {
    timespec t;
    clock_gettime(c, &t);
    return double(t.tv_sec) + 1e-9 * double(t.tv_nsec);
}
inline double now() {
    return clk(CLOCK_MONOTONIC);
}
inline double cpu() {
    return clk(CLOCK_PROCESS_CPUTIME_ID);
}

struct Stat {
    double med = 0, lo = 0, hi = 0, cpu = 0;
    int reps = 0;
};

inline double median(std::vector<double> v) {
    std::sort(v.begin(), v.end());
    return v.empty() ? 0 : v[v.size() / 2];
}

inline Stat stat(std::vector<double> const& w, std::vector<double> const& c) {
    Stat s;
    s.med = median(w);
    s.cpu = median(c);
    s.reps = int(w.size());
    s.lo = *std::min_element(w.begin(), w.end());
    s.hi = *std::max_element(w.begin(), w.end());
    return s;
}

// Runs f until minReps and minSecs are both reached (or maxSecs passed after three); `batch` calls per sample.
template <class F>
Stat measure(F f, int batch = 1, double minSecs = 0.5, int minReps = 7, double maxSecs = 12) {
    f();
    if (batch > 1)
        for (int i = 1; i < batch; ++i)
            f();
    std::vector<double> w, c;
    double t0 = now();
    for (;;) {
        double a = now(), ca = cpu();
        for (int i = 0; i < batch; ++i)
            f();
        w.push_back((now() - a) / batch);
        c.push_back((cpu() - ca) / batch);
        double el = now() - t0;
        if ((int(w.size()) >= minReps && el >= minSecs) || (w.size() >= 3 && el > maxSecs) || el > 3 * maxSecs)
            break;
    }
    return stat(w, c);
}

inline size_t rssBytes() {
    malloc_trim(0);
    long a = 0, r = 0;
    FILE* f = std::fopen("/proc/self/statm", "r");
    if (f) {
        if (std::fscanf(f, "%ld %ld", &a, &r) != 2)
            r = 0;
        std::fclose(f);
    }
    return size_t(r) * size_t(sysconf(_SC_PAGESIZE));
}

// ---------------------------------------------------------------- results
inline char const* mode() {
    char const* m = std::getenv("PEER_MODE");
    return m ? m : "llvmpipe";
}
inline bool modeIs(char const* m) {
    return !std::strcmp(mode(), m);
}

inline void emit(char const* p, std::string const& c, size_t n, char const* unit, double v, double lo, double hi,
    double cpuv, int reps, bool gl, char const* ok) {
    std::printf("{\"peer\":\"%s\",\"case\":\"%s\",\"n\":%zu,\"unit\":\"%s\",\"value\":%.6g,\"min\":%.6g,\"max\":%.6g,"
                "\"cpu\":%.6g,\"reps\":%d,\"mode\":\"%s\",\"check\":\"%s\"}\n",
        p, c.c_str(), n, unit, v, lo, hi, cpuv, reps, gl ? mode() : "cpu", ok);
    std::fflush(stdout);
}
inline void emit(char const* p, std::string const& c, size_t n, char const* unit, Stat const& s, double scale,
    bool gl = false, char const* ok = "-") {
    emit(p, c, n, unit, s.med * scale, s.lo * scale, s.hi * scale, s.cpu * scale, s.reps, gl, ok);
}
inline void emit1(char const* p, std::string const& c, size_t n, char const* unit, double v, char const* ok = "-") {
    emit(p, c, n, unit, v, v, v, v, 1, false, ok);
}
inline char const* okStr(bool b) {
    return b ? "ok" : "FAIL";
}

} // namespace peer
