#pragma once

// Profiles of pipelines: which picture a pipeline produces.
enum EProfile : int {
    PROFILE_MAIN = 1,
    PROFILE_PIP = 101,
    PROFILE_ANALYSIS = 401,
    PROFILE_CROP = 1001,
};
