#pragma once

/// Sets a flag for the length of a scope.
class VDFlagGuard
{
public:
    explicit VDFlagGuard(bool& flag) : flag_(flag), before_(flag) { flag_ = true; }
    ~VDFlagGuard() { flag_ = before_; }
    VDFlagGuard(const VDFlagGuard&) = delete;
    VDFlagGuard& operator=(const VDFlagGuard&) = delete;

private:
    bool& flag_;
    bool before_;
};
