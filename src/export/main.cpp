// Entry point of qsbexport, which writes a scene as glTF.

#include "export/RunExport.h"

int main(int count, char** values)
{
    return RunExport({values + (count > 0 ? 1 : 0), values + count}, stdout, stderr);
}
