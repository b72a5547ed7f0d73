#include "support/TestSupport.h"

#include <sys/stat.h>

#include <cstdlib>

int main(int argc, char** argv)
{
    umask(022);  // manifests that others may write to aren't obeyed
    const TestFolder configuration;
    setenv("DAX_HOME", configuration.Name("home/").c_str(), 1);
    setenv("DAX_SYS", configuration.Name("sys/").c_str(), 1);
    testing::InitGoogleTest(&argc, argv);
    return RUN_ALL_TESTS();
}
