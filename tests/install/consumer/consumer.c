/* Loads the installed module and reads its image record through the installed header. */
#include <dlfcn.h>
#include <stdio.h>
#include <string.h>
#include <zelkovan/zelkovan.h>

int main(void) {
    void* module = dlopen(MODULE_FILE, RTLD_NOW | RTLD_LOCAL);
    if (module == NULL) {
        fprintf(stderr, "%s\n", dlerror());
        return 1;
    }
    const ImageInformation* image = dlsym(module, "vi_mcn");
    const FunctionItem* item = dlsym(module, "fncitems");
    if (image == NULL || item == NULL || strcmp(image->tag, "ZOT_Image_Information=") != 0) return 1;
    printf("%s %s\n", item->name, image->release);
    return strcmp(item->name, "FINANCE") != 0;
}
