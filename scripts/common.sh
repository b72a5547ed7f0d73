# What the scripts share; read with ". scripts/common.sh" from the project's root.

# Configures and builds a preset. ccache speeds up repeated builds where it is installed, and isn't needed.
# usage: build_preset PRESET [TARGET...]
build_preset() {
    preset=$1
    shift
    launcher=
    if command -v ccache >/dev/null; then
        launcher=-DCMAKE_CXX_COMPILER_LAUNCHER=ccache
        # Without these it passes on every file that begins with a precompiled header.
        export CCACHE_SLOPPINESS=pch_defines,time_macros
    fi
    cmake --preset "$preset" $launcher
    if [ $# -gt 0 ]; then
        cmake --build --preset "$preset" --target "$@"
    else
        cmake --build --preset "$preset"
    fi
}
