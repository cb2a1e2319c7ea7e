"""A recipe for Conan 2, of the tree that it stands in: conan create packaging/conan"""

import os
import re

from conan import ConanFile
from conan.tools.cmake import CMake, CMakeToolchain, cmake_layout
from conan.tools.files import copy, load


class ZunRtcpRecipe(ConanFile):
    name = "zunrtcp"
    description = "RTCP compound packets: wire bytes to typed objects and back"
    package_type = "library"
    settings = "os", "arch", "compiler", "build_type"
    options = {"shared": [True, False], "fPIC": [True, False]}
    default_options = {"shared": False, "fPIC": True}
    implements = ["auto_shared_fpic"]

    @property
    def _root(self):
        return os.path.join(self.recipe_folder, "..", "..")

    def set_version(self):
        self.version = re.search(r"VERSION ([\d.]+)", load(self, os.path.join(self._root, "CMakeLists.txt")).split("project(")[1]).group(1)

    def export_sources(self):
        for pattern in ("CMakeLists.txt", "Zun/*", "cmake/*"):
            copy(self, pattern, src=self._root, dst=self.export_sources_folder)

    def layout(self):
        cmake_layout(self)

    def generate(self):
        # BUILD_SHARED_LIBS is set from the option `shared`.
        CMakeToolchain(self).generate()

    def build(self):
        cmake = CMake(self)
        cmake.configure()
        cmake.build()

    def package(self):
        CMake(self).install()

    def package_info(self):
        self.cpp_info.libs = ["zunrtcp"]
        self.cpp_info.set_property("cmake_file_name", "ZunRtcp")
        self.cpp_info.set_property("cmake_target_name", "ZunRtcp::zunrtcp")
        self.cpp_info.set_property("pkg_config_name", "zunrtcp")
