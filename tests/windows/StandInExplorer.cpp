// Takes the place of the file manager: writes what it was asked into the file that BIGIMGPREVIEW_EXPLORER_RECORD names.
#include <string>
#include <windows.h>

int WINAPI wWinMain(HINSTANCE, HINSTANCE, LPWSTR pParameters, int)
{
    std::wstring path(MAX_PATH, L'\0');
    const DWORD nLength = GetEnvironmentVariableW(L"BIGIMGPREVIEW_EXPLORER_RECORD", &path[0], MAX_PATH);
    if (nLength == 0 || nLength >= MAX_PATH)
        return 1;
    path.resize(nLength);
    const std::wstring unfinished = path + L".part";
    const HANDLE file = CreateFileW(unfinished.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (file == INVALID_HANDLE_VALUE)
        return 1;
    const std::wstring asked(pParameters);
    DWORD nWritten = 0;
    WriteFile(file, asked.data(), DWORD(asked.size() * sizeof(wchar_t)), &nWritten, nullptr);
    CloseHandle(file);
    // Whoever waits for it finds it whole.
    return MoveFileW(unfinished.c_str(), path.c_str()) != 0 ? 0 : 1;
}
