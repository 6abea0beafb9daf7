// Lower bounds: the same scene drawn and picked with bare OpenGL calls over a flat array (no scene graph),
// and plain CPU ray tests over flat arrays.
#define GL_GLEXT_PROTOTYPES
#include "bench/peers/common.h"
#include "bench/peers/eglctx.h"
#include <GL/gl.h>
#include <GL/glext.h>
using namespace peer;

static char const* P = "rawgl";
struct M4 {
    float m[16];
};

static M4 perspective() {
    M4 r{};
    float f = 1 / std::tan(kFovY * 0.5f * float(M_PI) / 180);
    r.m[0] = r.m[5] = f;
    r.m[10] = (kFar + kNear) / (kNear - kFar);
    r.m[11] = -1;
    r.m[14] = 2 * kFar * kNear / (kNear - kFar);
    return r;
}
// GLU's pick matrix, centre (cx,cy) and size (w,h) in pixels
static M4 pickMatrix(float cx, float cy, float w, float h) {
    M4 r{};
    r.m[0] = kView / w;
    r.m[5] = kView / h;
    r.m[10] = r.m[15] = 1;
    r.m[12] = (kView - 2 * cx) / w;
    r.m[13] = (kView - 2 * cy) / h;
    return r;
}
static M4 mul(const M4& a, const M4& b) {
    M4 r{};
    for (int c = 0; c < 4; ++c)
        for (int i = 0; i < 4; ++i)
            for (int k = 0; k < 4; ++k)
                r.m[c * 4 + i] += a.m[k * 4 + i] * b.m[c * 4 + k];
    return r;
}

struct Gl {
    GLuint vbo = 0, ibo = 0;
    GLsizei count = 0;
    explicit Gl(Mesh const& m) {
        count = GLsizei(m.idx.size());
        glGenBuffers(1, &vbo);
        glBindBuffer(GL_ARRAY_BUFFER, vbo);
        glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(m.pos.size() * 4), m.pos.data(), GL_STATIC_DRAW);
        glGenBuffers(1, &ibo);
        glBindBuffer(GL_ELEMENT_ARRAY_BUFFER, ibo);
        glBufferData(GL_ELEMENT_ARRAY_BUFFER, GLsizeiptr(m.idx.size() * 4), m.idx.data(), GL_STATIC_DRAW);
        glEnableClientState(GL_VERTEX_ARRAY);
        glVertexPointer(3, GL_FLOAT, 0, nullptr);
    }
};

static void view(const M4* pick = nullptr) {
    glViewport(0, 0, kView, kView);
    M4 p = perspective();
    if (pick)
        p = mul(*pick, p);
    glMatrixMode(GL_PROJECTION);
    glLoadMatrixf(p.m);
    glMatrixMode(GL_MODELVIEW);
    glLoadIdentity();
    glTranslatef(0, 0, -kEyeZ);
    glEnable(GL_DEPTH_TEST);
    glEnable(GL_CULL_FACE);
    glClearColor(0, 0, 0.25f, 1);
}
static std::vector<M4> matrices(std::vector<Leaf> const& v) {
    std::vector<M4> r(v.size());
    for (size_t i = 0; i < v.size(); ++i) {
        M4 m{};
        m.m[0] = m.m[5] = m.m[10] = m.m[15] = 1;
        m.m[12] = v[i].x;
        m.m[13] = v[i].y;
        m.m[14] = v[i].z - kEyeZ;
        r[i] = m;
    }
    return r;
}
static bool centreRed() {
    unsigned char p[4];
    glReadPixels(kView / 2, kView / 2, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, p);
    return p[0] > 200 && p[1] < 50;
}
static void discard() {
    if (modeIs("discard"))
        glEnable(GL_RASTERIZER_DISCARD);
}

static GLuint program(char const* vs, char const* fs) {
    GLuint p = glCreateProgram();
    char const* src[2] = {vs, fs};
    GLenum t[2] = {GL_VERTEX_SHADER, GL_FRAGMENT_SHADER};
    for (int i = 0; i < 2; ++i) {
        GLuint s = glCreateShader(t[i]);
        glShaderSource(s, 1, &src[i], nullptr);
        glCompileShader(s);
        glAttachShader(p, s);
    }
    glBindAttribLocation(p, 0, "pos");
    glBindAttribLocation(p, 1, "off");
    glBindAttribLocation(p, 2, "col");
    glLinkProgram(p);
    GLint ok = 0;
    glGetProgramiv(p, GL_LINK_STATUS, &ok);
    if (!ok) {
        std::fprintf(stderr, "shader link failed\n");
        std::exit(2);
    }
    return p;
}
static char const* VS = "#version 120\nattribute vec3 pos,off,col; varying vec3 c; void main(){c=col; "
                        "gl_Position=gl_ModelViewProjectionMatrix*vec4(pos+off,1.0);}";
static char const* VC = "#version 120\nvarying vec3 c; void main(){c=gl_Color.rgb; gl_Position=ftransform();}";
static char const* FS = "#version 120\nvarying vec3 c; void main(){gl_FragColor=vec4(c,1.0);}";

template <class F>
static void drawCase(char const* name, size_t n, F body) {
    auto frame = [&] {
        glClear(GL_COLOR_BUFFER_BIT | GL_DEPTH_BUFFER_BIT);
        body();
        glFinish();
    };
    frame();
    bool noop = modeIs("noop"), ok = noop || centreRed();
    discard();
    Stat s = measure(frame);
    glDisable(GL_RASTERIZER_DISCARD);
    emit(P, name, n, "ms/frame", s, 1e3, true, noop ? "-" : okStr(ok));
    emit(P, std::string(name) + "_per_leaf", n, "us/leaf", s, 1e6 / double(n), true, noop ? "-" : okStr(ok));
}

static void draw(size_t n) {
    auto L = makeLeaves(n);
    auto M = matrices(L);
    makeGlContext(kView);
    Mesh cube = makeCube();
    Gl g(cube);
    view();
    std::fprintf(stderr, "# %s | %s\n", glGetString(GL_RENDERER), glGetString(GL_VERSION));
    drawCase("draw_loadmatrix", n, [&] {
        for (size_t i = 0; i < n; ++i) {
            glLoadMatrixf(M[i].m);
            glColor3fv(&L[i].r);
            glDrawElements(GL_TRIANGLES, g.count, GL_UNSIGNED_INT, nullptr);
        }
    });
    glColor3f(1, 0, 0);
    drawCase("draw_loadmatrix_nocolour", n, [&] {
        for (size_t i = 0; i < n; ++i) {
            glLoadMatrixf(M[i].m);
            glDrawElements(GL_TRIANGLES, g.count, GL_UNSIGNED_INT, nullptr);
        }
    });
    view();
    drawCase("draw_pushmult", n, [&] {
        for (size_t i = 0; i < n; ++i) {
            glPushMatrix();
            glTranslatef(L[i].x, L[i].y, L[i].z);
            glColor3fv(&L[i].r);
            glDrawElements(GL_TRIANGLES, g.count, GL_UNSIGNED_INT, nullptr);
            glPopMatrix();
        }
    });
    // The same calls as draw_loadmatrix, the colour taken through a vertex shader. Without one, unlit glColor becomes a
    // constant of the fragment stage, and llvmpipe (Mesa 22.3) pays some 8 to 25 us for each change of one; not tried on a GPU.
    view();
    GLuint pc = program(VC, FS);
    glUseProgram(pc);
    drawCase("draw_loadmatrix_glsl", n, [&] {
        for (size_t i = 0; i < n; ++i) {
            glLoadMatrixf(M[i].m);
            glColor3fv(&L[i].r);
            glDrawElements(GL_TRIANGLES, g.count, GL_UNSIGNED_INT, nullptr);
        }
    });
    view();
    GLuint prog = program(VS, FS);
    glUseProgram(prog);
    glDisableClientState(GL_VERTEX_ARRAY);
    glBindBuffer(GL_ARRAY_BUFFER, g.vbo);
    glEnableVertexAttribArray(0);
    glVertexAttribPointer(0, 3, GL_FLOAT, GL_FALSE, 0, nullptr);
    drawCase("draw_shader_attrib", n, [&] {
        for (size_t i = 0; i < n; ++i) {
            glVertexAttrib3fv(1, &L[i].x);
            glVertexAttrib3fv(2, &L[i].r);
            glDrawElements(GL_TRIANGLES, g.count, GL_UNSIGNED_INT, nullptr);
        }
    });
    GLuint ib;
    glGenBuffers(1, &ib);
    glBindBuffer(GL_ARRAY_BUFFER, ib);
    glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(n * sizeof(Leaf)), L.data(), GL_STATIC_DRAW);
    for (GLuint a = 1; a <= 2; ++a) {
        glEnableVertexAttribArray(a);
        glVertexAttribPointer(a, 3, GL_FLOAT, GL_FALSE, sizeof(Leaf), (void*)(size_t(a - 1) * 12));
        glVertexAttribDivisor(a, 1);
    }
    drawCase("draw_instanced", n,
        [&] { glDrawElementsInstanced(GL_TRIANGLES, g.count, GL_UNSIGNED_INT, nullptr, GLsizei(n)); });
    // instanced, with all instance data sent again each frame (what a scene that changes everywhere costs)
    drawCase("draw_instanced_upload", n, [&] {
        glBufferData(GL_ARRAY_BUFFER, GLsizeiptr(n * sizeof(Leaf)), L.data(), GL_STREAM_DRAW);
        glDrawElementsInstanced(GL_TRIANGLES, g.count, GL_UNSIGNED_INT, nullptr, GLsizei(n));
    });
}

struct Sel {
    int hits = 0;
    long best = -1;
};
static Sel nearest(std::vector<GLuint> const& b, int hits) { // hit records: count, zmin, zmax, names...
    Sel s;
    s.hits = hits;
    GLuint zb = 0xffffffffu;
    size_t p = 0;
    for (int i = 0; i < hits; ++i) {
        GLuint k = b[p], z0 = b[p + 1];
        if (k && (s.best < 0 || z0 < zb)) {
            zb = z0;
            s.best = long(b[p + 3]);
        }
        p += 3 + k;
    }
    return s;
}
// frustum of the pick window: |x| <= w*d + r, |y| likewise, around a centre
static Sel select(
    std::vector<Leaf> const& L, std::vector<M4> const& M, Gl const& g, std::vector<GLuint>& buf, float px, bool prune) {
    M4 pm = pickMatrix(kView / 2, kView / 2, px, px);
    glSelectBuffer(GLsizei(buf.size()), buf.data());
    glRenderMode(GL_SELECT);
    glInitNames();
    glPushName(0);
    view(&pm);
    float k = std::tan(kFovY * 0.5f * float(M_PI) / 180) * px / kView, r = kHalf * 1.7321f * (1 + k);
    for (size_t i = 0; i < L.size(); ++i) {
        if (prune) {
            float w = k * (kEyeZ - L[i].z) + r;
            if (std::fabs(L[i].x) > w || std::fabs(L[i].y) > w)
                continue;
        }
        glLoadName(GLuint(i));
        glLoadMatrixf(M[i].m);
        glDrawElements(GL_TRIANGLES, g.count, GL_UNSIGNED_INT, nullptr);
    }
    int hits = glRenderMode(GL_RENDER);
    if (hits < 0) {
        std::fprintf(stderr, "select buffer overflow\n");
        std::exit(3);
    }
    return nearest(buf, hits);
}

static void pick(size_t n) {
    auto L = makeLeaves(n);
    auto M = matrices(L);
    makeGlContext(kView);
    Mesh cube = makeCube();
    Gl g(cube);
    std::vector<GLuint> buf(4 * n + 64);
    Sel r;
    for (int prune = 0; prune < 2; ++prune) {
        Stat s = measure([&] { r = select(L, M, g, buf, 5, prune); });
        emit(P, prune ? "pick_many_select_pruned" : "pick_many_select", n, "ms/pick", s, 1e3, true,
            okStr(r.best == long(targetLeaf(n))));
    }
    // CPU: ray against every leaf's box, flat array
    size_t hit = 0;
    Stat s = measure([&] {
        float bt = 1e30f;
        size_t b = ~size_t(0);
        for (size_t i = 0; i < n; ++i)
            if (std::fabs(L[i].x) <= kHalf && std::fabs(L[i].y) <= kHalf) {
                float t = kEyeZ - (L[i].z + kHalf);
                if (t < bt) {
                    bt = t;
                    b = i;
                }
            }
        hit = b;
    });
    emit(P, "pick_many_cpu_flat", n, "ms/pick", s, 1e3, false, okStr(hit == targetLeaf(n)));
}

static void box(size_t n) {
    auto L = makeLeaves(n);
    auto M = matrices(L);
    makeGlContext(kView);
    Mesh cube = makeCube();
    Gl g(cube);
    std::vector<GLuint> buf(4 * n + 64);
    Sel r;
    size_t must, may;
    boxAnswer(L, must, may);
    for (int prune = 0; prune < 2; ++prune) {
        Stat s = measure([&] { r = select(L, M, g, buf, kView / 2, prune); });
        emit(P, prune ? "box_pick_select_pruned" : "box_pick_select", n, "ms/pick", s, 1e3, true,
            okStr(size_t(r.hits) >= must && size_t(r.hits) <= may));
    }
}

static void mesh() {
    Mesh m = makeTerrain();
    size_t tri, n = m.idx.size() / 3;
    double z;
    terrainAnswer(m, tri, z);
    makeGlContext(kView);
    Gl g(m);
    std::vector<GLuint> buf(64);
    int hits = 0;
    auto sel = [&](bool perRow) {
        M4 pm = pickMatrix(kView / 2, kView / 2, 5, 5);
        glSelectBuffer(GLsizei(buf.size()), buf.data());
        glRenderMode(GL_SELECT);
        glInitNames();
        glPushName(7);
        view(&pm);
        glDisable(GL_CULL_FACE);
        (void)perRow;
        glDrawElements(GL_TRIANGLES, g.count, GL_UNSIGNED_INT, nullptr);
        hits = glRenderMode(GL_RENDER);
    };
    Stat s = measure([&] { sel(false); });
    // the record's zmin is a window depth scaled to 2^32-1: back to eye distance
    double zw = double(buf[1]) / 4294967295.0, ndc = 2 * zw - 1,
           dist = 2.0 * kFar * kNear / (kFar + kNear - ndc * (kFar - kNear));
    // what GL_SELECT must report: the highest point of the terrain inside the 5x5 pixel window
    double k = std::tan(kFovY * 0.5 * M_PI / 180) * 5 / kView, want = -1e9;
    for (size_t i = 0; i < m.pos.size(); i += 3) {
        double w = k * (kEyeZ - m.pos[i + 2]);
        if (std::fabs(m.pos[i]) <= w && std::fabs(m.pos[i + 1]) <= w)
            want = std::max(want, double(m.pos[i + 2]));
    }
    bool ok = hits == 1 && buf[3] == 7 && std::fabs((kEyeZ - dist) - want) < 0.15;
    emit(P, "pick_mesh_select", n, "ms/pick", s, 1e3, true, okStr(ok));
    size_t t2 = 0;
    double d = 0;
    double o[3] = {0, 0, kEyeZ}, dir[3] = {0, 0, -1};
    s = measure([&] { rayMesh(m, o, dir, t2, d); });
    emit(P, "pick_mesh_cpu_brute", n, "ms/pick", s, 1e3, false, okStr(t2 == tri));
}

int main(int argc, char** argv) {
    if (argc < 3)
        return 1;
    std::string c = argv[1];
    size_t n = size_t(std::atof(argv[2]));
    if (c == "draw")
        draw(n);
    else if (c == "pick_many")
        pick(n);
    else if (c == "box_pick")
        box(n);
    else if (c == "pick_mesh")
        mesh();
    _exit(0);
}
