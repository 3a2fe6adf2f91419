<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>CommandLine</name>
    <message>
        <source>There is no file or folder %1</source>
        <translation>没有文件或文件夹 %1</translation>
    </message>
    <message>
        <source>Name one file, or any number of folders</source>
        <translation>请指定一个文件，或任意多个文件夹</translation>
    </message>
    <message>
        <source>There is no theme %1: dark or light</source>
        <translation>没有主题 %1：只有 dark（深色）或 light（浅色）</translation>
    </message>
    <message>
        <source>Shows folders of files and previews them.</source>
        <translation>显示文件夹中的文件并预览。</translation>
    </message>
    <message>
        <source>file</source>
        <translation>文件</translation>
    </message>
    <message>
        <source>folder</source>
        <translation>文件夹</translation>
    </message>
    <message>
        <source>Keep the library in this file.</source>
        <translation>将资源库保存在此文件中。</translation>
    </message>
    <message>
        <source>Load the plug-ins of this folder.</source>
        <translation>加载此文件夹中的插件。</translation>
    </message>
    <message>
        <source>Show everything by itself, with pictures of each step in this folder.</source>
        <translation>自动演示全部功能，并将每一步的截图存入此文件夹。</translation>
    </message>
    <message>
        <source>Start with this theme: dark or light.</source>
        <translation>以此主题启动：dark（深色）或 light（浅色）。</translation>
    </message>
    <message>
        <source>name</source>
        <translation>名称</translation>
    </message>
    <message>
        <source>A file to preview, folders to show, or a library pack to import.</source>
        <translation>要预览的文件、要显示的文件夹，或要导入的资源库包。</translation>
    </message>
</context>
<context>
    <name>CoverFile</name>
    <message>
        <source>Cancelled</source>
        <translation>已取消</translation>
    </message>
    <message>
        <source>%1 is no picture that can be read</source>
        <translation>%1 不是可以读取的图片</translation>
    </message>
    <message>
        <source>The preview picture cannot be kept in %1</source>
        <translation>预览图无法保存到 %1</translation>
    </message>
</context>
<context>
    <name>DocumentConverter</name>
    <message>
        <source>Presentations and office documents have no pages: LibreOffice is missing. Please install the packages %1.</source>
        <translation>演示文稿和办公文档没有页面：缺少 LibreOffice。请安装软件包 %1。</translation>
    </message>
    <message>
        <source>PostScript files have no pages: Ghostscript is missing. Please install the package %1.</source>
        <translation>PostScript 文件没有页面：缺少 Ghostscript。请安装软件包 %1。</translation>
    </message>
</context>
<context>
    <name>EmptyState</name>
    <message>
        <source>Open folder…</source>
        <translation>打开文件夹…</translation>
    </message>
</context>
<context>
    <name>FileCopy</name>
    <message>
        <source>Cancelled</source>
        <translation>已取消</translation>
    </message>
    <message>
        <source>There is not enough space for %1</source>
        <translation>空间不足，放不下 %1</translation>
    </message>
    <message>
        <source>%1 is not there any more</source>
        <translation>%1 已不存在</translation>
    </message>
    <message>
        <source>%1 is no file</source>
        <translation>%1 不是文件</translation>
    </message>
    <message>
        <source>%1 keeps changing while it is copied</source>
        <translation>复制期间 %1 不断变化</translation>
    </message>
</context>
<context>
    <name>FileDeeds</name>
    <message>
        <source>Import pack…</source>
        <translation>导入资源库包…</translation>
    </message>
    <message>
        <source>Import pack</source>
        <translation>导入资源库包</translation>
    </message>
    <message>
        <source>Library packs</source>
        <translation>资源库包</translation>
    </message>
    <message>
        <source>Protect from deleting</source>
        <translation>禁止删除</translation>
    </message>
    <message>
        <source>Importing %1… %2%</source>
        <translation>正在导入 %1… %2%</translation>
    </message>
    <message>
        <source>Imported into %1: %2</source>
        <translation>已导入到 %1：%2</translation>
    </message>
</context>
<context>
    <name>FileGridModel</name>
    <message>
        <source>%1
Missing</source>
        <translation>%1
文件缺失</translation>
    </message>
</context>
<context>
    <name>FileGridView</name>
    <message>
        <source>Files</source>
        <translation>文件</translation>
    </message>
</context>
<context>
    <name>FileMetadata</name>
    <message>
        <source>1/%1 s</source>
        <translation>1/%1 秒</translation>
    </message>
    <message>
        <source>%1 s</source>
        <translation>%1 秒</translation>
    </message>
    <message>
        <source>f/%1</source>
        <translation>f/%1</translation>
    </message>
    <message>
        <source>ISO %1</source>
        <translation>ISO %1</translation>
    </message>
    <message>
        <source>%1 mm</source>
        <translation>%1 毫米</translation>
    </message>
</context>
<context>
    <name>FileRemoval</name>
    <message>
        <source>%1 is a folder now</source>
        <translation>%1 现在是文件夹</translation>
    </message>
    <message>
        <source>There is no recycle bin for %1</source>
        <translation>%1 没有可用的回收站</translation>
    </message>
</context>
<context>
    <name>FilesMenu</name>
    <message>
        <source>Copy</source>
        <translation>复制</translation>
    </message>
    <message>
        <source>Move to Recycle Bin</source>
        <translation>移到回收站</translation>
    </message>
    <message>
        <source>Remove from Library</source>
        <translation>从资源库中移除</translation>
    </message>
    <message>
        <source>Quick Preview</source>
        <translation>快速预览</translation>
    </message>
    <message>
        <source>Full Preview</source>
        <translation>完整预览</translation>
    </message>
    <message>
        <source>Open with Default App</source>
        <translation>用默认程序打开</translation>
    </message>
    <message>
        <source>Open Folder</source>
        <translation>打开所在文件夹</translation>
    </message>
    <message>
        <source>Copy Path</source>
        <translation>复制路径</translation>
    </message>
    <message>
        <source>Rename</source>
        <translation>重命名</translation>
    </message>
    <message>
        <source>Export to Folder…</source>
        <translation>导出到文件夹…</translation>
    </message>
    <message>
        <source>Export as Library Pack…</source>
        <translation>导出为资源库包…</translation>
    </message>
    <message>
        <source>No program opens %1.</source>
        <translation>没有程序可以打开 %1。</translation>
    </message>
    <message>
        <source>Export as Library Pack</source>
        <translation>导出为资源库包</translation>
    </message>
    <message>
        <source>Export to Folder</source>
        <translation>导出到文件夹</translation>
    </message>
    <message>
        <source>Library packs</source>
        <translation>资源库包</translation>
    </message>
    <message>
        <source>Exporting… %1%</source>
        <translation>正在导出… %1%</translation>
    </message>
</context>
<context>
    <name>FolderExport</name>
    <message>
        <source>The folder %1 went away</source>
        <translation>文件夹 %1 已不存在</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>已取消</translation>
    </message>
</context>
<context>
    <name>FolderTree</name>
    <message>
        <source>Folders</source>
        <translation>文件夹</translation>
    </message>
    <message>
        <source>All folders</source>
        <translation>全部文件夹</translation>
    </message>
</context>
<context>
    <name>HostSession</name>
    <message>
        <source>The language takes effect at the next start.</source>
        <translation>语言将在下次启动时生效。</translation>
    </message>
    <message>
        <source>Thumbnails and pictures are missing: there is no base module.</source>
        <translation>没有缩略图和图片：缺少基础模块。</translation>
    </message>
    <message>
        <source>Files cannot be previewed: there is no preview plug-in.</source>
        <translation>无法预览文件：缺少预览插件。</translation>
    </message>
    <message>
        <source>The file %1 cannot be shown.</source>
        <translation>无法显示文件 %1。</translation>
    </message>
    <message>
        <source>Videos and sounds do not play: there is no media player.</source>
        <translation>无法播放视频和音频：没有媒体播放器。</translation>
    </message>
</context>
<context>
    <name>HostSettingsPlugin</name>
    <message>
        <source>Settings</source>
        <translation>设置</translation>
    </message>
</context>
<context>
    <name>HostShortcuts</name>
    <message>
        <source>Zoom in</source>
        <translation>放大</translation>
    </message>
    <message>
        <source>Show the picture larger</source>
        <translation>放大显示图片</translation>
    </message>
    <message>
        <source>Zoom out</source>
        <translation>缩小</translation>
    </message>
    <message>
        <source>Show the picture smaller</source>
        <translation>缩小显示图片</translation>
    </message>
    <message>
        <source>Fit to window</source>
        <translation>适应窗口</translation>
    </message>
    <message>
        <source>Show the whole picture</source>
        <translation>显示整张图片</translation>
    </message>
    <message>
        <source>Actual size</source>
        <translation>实际大小</translation>
    </message>
    <message>
        <source>Show one pixel of the picture for each pixel of the screen</source>
        <translation>图片的一个像素对应屏幕的一个像素</translation>
    </message>
    <message>
        <source>Fit to width</source>
        <translation>适应宽度</translation>
    </message>
    <message>
        <source>Show the picture as wide as the window</source>
        <translation>以窗口宽度显示图片</translation>
    </message>
    <message>
        <source>Move to recycle bin</source>
        <translation>移到回收站</translation>
    </message>
    <message>
        <source>Move the file to the recycle bin</source>
        <translation>将文件移到回收站</translation>
    </message>
</context>
<context>
    <name>InfoPanel</name>
    <message>
        <source>Select a file to see what is known of it.</source>
        <translation>选择一个文件以查看其信息。</translation>
    </message>
    <message>
        <source>Information about the file</source>
        <translation>文件信息</translation>
    </message>
    <message>
        <source>This file is missing. Its labels and notes are kept for when it comes back.</source>
        <translation>此文件缺失。其标签和批注会一直保留，直到文件恢复。</translation>
    </message>
    <message>
        <source>Forget it</source>
        <translation>移出资源库</translation>
    </message>
    <message>
        <source>Takes the selected missing files out of the library</source>
        <translation>将选中的缺失文件移出资源库</translation>
    </message>
    <message>
        <source>Labels</source>
        <translation>标签</translation>
    </message>
    <message>
        <source>Notes</source>
        <translation>批注</translation>
    </message>
    <message>
        <source>Details</source>
        <translation>详细信息</translation>
    </message>
    <message>
        <source>No notes</source>
        <translation>没有批注</translation>
    </message>
    <message>
        <source>1 note</source>
        <translation>1 条批注</translation>
    </message>
    <message>
        <source>%1 notes</source>
        <translation>%1 条批注</translation>
    </message>
    <message>
        <source>Remove preview picture</source>
        <translation>移除预览图</translation>
    </message>
    <message>
        <source>Shows the file by its own picture again</source>
        <translation>重新以文件自身的画面显示</translation>
    </message>
</context>
<context>
    <name>LabelChip</name>
    <message>
        <source>Label %1</source>
        <translation>标签 %1</translation>
    </message>
    <message>
        <source>%1 – Delete takes it away, the spot changes its colour</source>
        <translation>%1 – 按 Delete 移除，点击圆点更换颜色</translation>
    </message>
</context>
<context>
    <name>LabelColors</name>
    <message>
        <source>Red</source>
        <translation>红色</translation>
    </message>
    <message>
        <source>Orange</source>
        <translation>橙色</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>黄色</translation>
    </message>
    <message>
        <source>Green</source>
        <translation>绿色</translation>
    </message>
    <message>
        <source>Teal</source>
        <translation>蓝绿色</translation>
    </message>
    <message>
        <source>Blue</source>
        <translation>蓝色</translation>
    </message>
    <message>
        <source>Violet</source>
        <translation>紫色</translation>
    </message>
    <message>
        <source>Pink</source>
        <translation>粉色</translation>
    </message>
</context>
<context>
    <name>LabelEditor</name>
    <message>
        <source>Add a label</source>
        <translation>添加标签</translation>
    </message>
</context>
<context>
    <name>LabelList</name>
    <message>
        <source>Labels</source>
        <translation>标签</translation>
    </message>
    <message>
        <source>Delete the label</source>
        <translation>删除标签</translation>
    </message>
</context>
<context>
    <name>LanguageMenu</name>
    <message>
        <source>System</source>
        <translation>跟随系统</translation>
    </message>
</context>
<context>
    <name>LeftColumn</name>
    <message>
        <source>Labels</source>
        <translation>标签</translation>
    </message>
</context>
<context>
    <name>Library</name>
    <message>
        <source>%1 is in a folder that is protected from deleting</source>
        <translation>%1 所在的文件夹禁止删除</translation>
    </message>
    <message>
        <source>The library %1 cannot be used: %2. Changes of this session are not kept.</source>
        <translation>资源库 %1 无法使用：%2。本次会话的更改不会保存。</translation>
    </message>
</context>
<context>
    <name>LibraryBanner</name>
    <message>
        <source>Try again</source>
        <translation>重试</translation>
    </message>
    <message>
        <source>Start a new library</source>
        <translation>新建资源库</translation>
    </message>
    <message>
        <source>Go on without saving</source>
        <translation>不保存并继续</translation>
    </message>
    <message>
        <source>The present file is kept beside it under another name.</source>
        <translation>现有文件会改名保留在同一位置。</translation>
    </message>
    <message>
        <source>The library %1 cannot be used: %2. It is left as it is, and what you change now is not kept.</source>
        <translation>资源库 %1 无法使用：%2。该文件保持原样，现在所做的更改不会保存。</translation>
    </message>
</context>
<context>
    <name>LibrarySchema</name>
    <message>
        <source>it was written by a newer version of the program</source>
        <translation>它由更新版本的程序写入</translation>
    </message>
</context>
<context>
    <name>LibraryStore</name>
    <message>
        <source>its folder cannot be made</source>
        <translation>无法创建它所在的文件夹</translation>
    </message>
    <message>
        <source>the library has another file of this name, which may be missing at present</source>
        <translation>资源库中另有同名文件，该文件目前可能缺失</translation>
    </message>
    <message>
        <source>the preview picture cannot be kept</source>
        <translation>预览图无法保存</translation>
    </message>
    <message>
        <source>a label is neither named nor known</source>
        <translation>有标签既无名称，也不在资源库中</translation>
    </message>
</context>
<context>
    <name>LibraryWorker</name>
    <message>
        <source>There is no SQLite driver: %1</source>
        <translation>缺少 SQLite 驱动：%1</translation>
    </message>
    <message>
        <source>The library cannot be written: %1</source>
        <translation>无法写入资源库：%1</translation>
    </message>
    <message>
        <source>%1 cannot be put aside: %2</source>
        <translation>无法将 %1 另行保留：%2</translation>
    </message>
    <message>
        <source>The folder %1 cannot be made: %2</source>
        <translation>无法创建文件夹 %1：%2</translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Open folder</source>
        <translation>打开文件夹</translation>
    </message>
    <message>
        <source>No folder yet</source>
        <translation>尚未打开文件夹</translation>
    </message>
    <message>
        <source>Open a folder to see the files in it and in its sub-folders.</source>
        <translation>打开一个文件夹，即可查看其中及其子文件夹中的文件。</translation>
    </message>
    <message>
        <source>Nothing matches</source>
        <translation>没有匹配项</translation>
    </message>
    <message>
        <source>None of %1 files fits search, kind and label.</source>
        <translation>%1 个文件中没有符合搜索、类型和标签条件的文件。</translation>
    </message>
    <message>
        <source>Looking for files…</source>
        <translation>正在查找文件…</translation>
    </message>
    <message>
        <source>No files here</source>
        <translation>这里没有文件</translation>
    </message>
    <message>
        <source>This folder and its sub-folders are empty. Open another one, or put files into it.</source>
        <translation>此文件夹及其子文件夹为空。请打开其他文件夹，或放入文件。</translation>
    </message>
    <message>
        <source>Files whose names cannot be told apart were left out: %1. Rename them to see them here.</source>
        <translation>已略过名称无法区分的文件：%1。重命名后即可在此查看。</translation>
    </message>
    <message>
        <source>Folders that cannot be read: %1.</source>
        <translation>无法读取的文件夹：%1。</translation>
    </message>
</context>
<context>
    <name>MediaPlayer</name>
    <message>
        <source>Media player</source>
        <translation>媒体播放器</translation>
    </message>
    <message>
        <source>%1 cannot be played.</source>
        <translation>无法播放 %1。</translation>
    </message>
    <message>
        <source>The frame cannot be kept: %1</source>
        <translation>无法保存画面：%1</translation>
    </message>
    <message>
        <source>There is no sound device: videos and sounds play silently.</source>
        <translation>没有音频设备：视频和音频将静音播放。</translation>
    </message>
</context>
<context>
    <name>MetadataTable</name>
    <message>
        <source>Type</source>
        <translation>类型</translation>
    </message>
    <message>
        <source>Size</source>
        <translation>大小</translation>
    </message>
    <message>
        <source>%1 × %2</source>
        <translation>%1 × %2</translation>
    </message>
    <message>
        <source>Dimensions</source>
        <translation>尺寸</translation>
    </message>
    <message>
        <source>%1  (%2 MP)</source>
        <translation>%1  (%2 百万像素)</translation>
    </message>
    <message>
        <source>Duration</source>
        <translation>时长</translation>
    </message>
    <message>
        <source>Codec</source>
        <translation>编解码器</translation>
    </message>
    <message>
        <source>Taken</source>
        <translation>拍摄时间</translation>
    </message>
    <message>
        <source>Changed</source>
        <translation>修改时间</translation>
    </message>
    <message>
        <source>Camera</source>
        <translation>相机</translation>
    </message>
    <message>
        <source>Lens</source>
        <translation>镜头</translation>
    </message>
    <message>
        <source>Exposure</source>
        <translation>曝光</translation>
    </message>
    <message>
        <source>Colours</source>
        <translation>色彩</translation>
    </message>
    <message>
        <source>Folder</source>
        <translation>文件夹</translation>
    </message>
    <message>
        <source>Title</source>
        <translation>标题</translation>
    </message>
    <message>
        <source>Artist</source>
        <translation>艺术家</translation>
    </message>
    <message>
        <source>Album</source>
        <translation>专辑</translation>
    </message>
    <message>
        <source>Year</source>
        <translation>年份</translation>
    </message>
    <message>
        <source>Genre</source>
        <translation>流派</translation>
    </message>
    <message>
        <source>Frame rate</source>
        <translation>帧率</translation>
    </message>
    <message>
        <source>%1 per second</source>
        <translation>每秒 %1 帧</translation>
    </message>
    <message>
        <source>Bit rate</source>
        <translation>比特率</translation>
    </message>
    <message>
        <source>%1 kbit/s</source>
        <translation>%1 kbit/s</translation>
    </message>
    <message>
        <source>Channels</source>
        <translation>声道</translation>
    </message>
    <message>
        <source>Sample rate</source>
        <translation>采样率</translation>
    </message>
    <message>
        <source>%1 Hz</source>
        <translation>%1 Hz</translation>
    </message>
</context>
<context>
    <name>NameEdit</name>
    <message>
        <source>Name of the file</source>
        <translation>文件名</translation>
    </message>
    <message>
        <source>Click to rename (F2)</source>
        <translation>点击重命名 (F2)</translation>
    </message>
</context>
<context>
    <name>NotesList</name>
    <message>
        <source>Notes</source>
        <translation>批注</translation>
    </message>
    <message>
        <source>Note %1: %2</source>
        <translation>批注 %1：%2</translation>
    </message>
</context>
<context>
    <name>PackImporter</name>
    <message>
        <source>The pack %1 cannot be imported: %2</source>
        <translation>无法导入资源库包 %1：%2</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>已取消</translation>
    </message>
</context>
<context>
    <name>PackManifest</name>
    <message>
        <source>its list of files is damaged</source>
        <translation>其文件列表已损坏</translation>
    </message>
    <message>
        <source>it was made by a newer version of the program</source>
        <translation>它由更新版本的程序创建</translation>
    </message>
    <message>
        <source>entry %1 of its list of files is damaged</source>
        <translation>其文件列表的第 %1 项已损坏</translation>
    </message>
    <message>
        <source>its list names %1 twice</source>
        <translation>其列表中 %1 出现了两次</translation>
    </message>
</context>
<context>
    <name>PackReader</name>
    <message>
        <source>it holds a file with an absolute name: %1</source>
        <translation>其中有使用绝对路径的文件：%1</translation>
    </message>
    <message>
        <source>it holds a file that leads out of it: %1</source>
        <translation>其中有指向包外的文件：%1</translation>
    </message>
    <message>
        <source>it holds a file with the name of a device: %1</source>
        <translation>其中有以设备名命名的文件：%1</translation>
    </message>
    <message>
        <source>it holds a file whose name cannot be read</source>
        <translation>其中有名称无法读取的文件</translation>
    </message>
    <message>
        <source>it holds a link: %1</source>
        <translation>其中有链接：%1</translation>
    </message>
    <message>
        <source>it holds something that is no file: %1</source>
        <translation>其中有不是文件的项目：%1</translation>
    </message>
    <message>
        <source>it is encrypted</source>
        <translation>它已加密</translation>
    </message>
    <message>
        <source>it cannot be opened: %1</source>
        <translation>无法打开：%1</translation>
    </message>
    <message>
        <source>it is damaged</source>
        <translation>它已损坏</translation>
    </message>
    <message>
        <source>it holds too many files</source>
        <translation>其中的文件过多</translation>
    </message>
    <message>
        <source>it is damaged: %1</source>
        <translation>它已损坏：%1</translation>
    </message>
    <message>
        <source>it unpacks to more than it says</source>
        <translation>解包后的大小超出其声明</translation>
    </message>
    <message>
        <source>it holds two files called %1</source>
        <translation>其中有两个名为 %1 的文件</translation>
    </message>
    <message>
        <source>it does not tell the size of %1</source>
        <translation>其中没有 %1 的大小信息</translation>
    </message>
    <message>
        <source>it would unpack to far more than it can honestly hold</source>
        <translation>解包后的大小远超其应有的容量</translation>
    </message>
    <message>
        <source>%1 is missing or is not what its list says</source>
        <translation>%1 缺失，或与其列表不符</translation>
    </message>
    <message>
        <source>%1 is missing or too large</source>
        <translation>%1 缺失或过大</translation>
    </message>
    <message>
        <source>it holds a file that its list does not name: %1</source>
        <translation>其中有列表之外的文件：%1</translation>
    </message>
    <message>
        <source>it has no list of its files</source>
        <translation>其中没有文件列表</translation>
    </message>
</context>
<context>
    <name>PackWriter</name>
    <message>
        <source>%1 changed while it was packed</source>
        <translation>打包期间 %1 发生了变化</translation>
    </message>
    <message>
        <source>Cancelled</source>
        <translation>已取消</translation>
    </message>
</context>
<context>
    <name>PanelPicture</name>
    <message>
        <source>Preview picture</source>
        <translation>预览图</translation>
    </message>
</context>
<context>
    <name>PluginManager</name>
    <message>
        <source>it is no plug-in, or was built for another version</source>
        <translation>它不是插件，或为其他版本构建</translation>
    </message>
    <message>
        <source>There is no plug-ins folder %1</source>
        <translation>没有插件文件夹 %1</translation>
    </message>
    <message>
        <source>it could not be started</source>
        <translation>它无法启动</translation>
    </message>
    <message>
        <source>it could not work with the other plug-ins</source>
        <translation>它无法与其他插件协同工作</translation>
    </message>
    <message>
        <source>it is not a plug-in of this program</source>
        <translation>它不是本程序的插件</translation>
    </message>
    <message>
        <source>it refuses this program</source>
        <translation>它拒绝与本程序配合</translation>
    </message>
    <message>
        <source>%1 is not used: %2</source>
        <translation>未使用 %1：%2</translation>
    </message>
</context>
<context>
    <name>SafeRename</name>
    <message>
        <source>A file needs a name.</source>
        <translation>文件必须有名称。</translation>
    </message>
    <message>
        <source>This name stands for a folder.</source>
        <translation>此名称代表文件夹。</translation>
    </message>
    <message>
        <source>A name cannot contain &quot;/&quot;.</source>
        <translation>名称不能包含“/”。</translation>
    </message>
    <message>
        <source>The name is too long.</source>
        <translation>名称过长。</translation>
    </message>
    <message>
        <source>There is another file of this name.</source>
        <translation>已有同名文件。</translation>
    </message>
    <message>
        <source>The file is not there any more.</source>
        <translation>文件已不存在。</translation>
    </message>
    <message>
        <source>The folder may not be changed.</source>
        <translation>没有更改此文件夹的权限。</translation>
    </message>
</context>
<context>
    <name>StatusLine</name>
    <message>
        <source>1 file</source>
        <translation>1 个文件</translation>
    </message>
    <message>
        <source>%1 files</source>
        <translation>%1 个文件</translation>
    </message>
    <message>
        <source>%1 selected</source>
        <translation>已选 %1 个</translation>
    </message>
    <message>
        <source>Looking for files… %1</source>
        <translation>正在查找文件… %1</translation>
    </message>
    <message>
        <source>Making pictures… %1 of %2</source>
        <translation>正在生成图片… %1 / %2</translation>
    </message>
    <message>
        <source>%1 (and %2 more)</source>
        <translation>%1（另有 %2 条）</translation>
    </message>
</context>
<context>
    <name>TitleBar</name>
    <message>
        <source>Language</source>
        <translation>语言</translation>
    </message>
    <message>
        <source>Light or dark</source>
        <translation>浅色或深色</translation>
    </message>
    <message>
        <source>Minimise</source>
        <translation>最小化</translation>
    </message>
    <message>
        <source>Maximise</source>
        <translation>最大化</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>还原</translation>
    </message>
</context>
<context>
    <name>ToolRow</name>
    <message>
        <source>Open folder (Ctrl+O)</source>
        <translation>打开文件夹 (Ctrl+O)</translation>
    </message>
    <message>
        <source>Look for changes (F5)</source>
        <translation>查找更改 (F5)</translation>
    </message>
    <message>
        <source>Information (Alt+Enter)</source>
        <translation>信息 (Alt+Enter)</translation>
    </message>
    <message>
        <source>Search names and labels</source>
        <translation>搜索名称和标签</translation>
    </message>
    <message>
        <source>Search (Ctrl+F)</source>
        <translation>搜索 (Ctrl+F)</translation>
    </message>
    <message>
        <source>Kind of files</source>
        <translation>文件类型</translation>
    </message>
    <message>
        <source>All kinds</source>
        <translation>全部类型</translation>
    </message>
    <message>
        <source>Pictures</source>
        <translation>图片</translation>
    </message>
    <message>
        <source>Camera files</source>
        <translation>相机原始文件</translation>
    </message>
    <message>
        <source>Documents</source>
        <translation>文档</translation>
    </message>
    <message>
        <source>Videos</source>
        <translation>视频</translation>
    </message>
    <message>
        <source>Sounds</source>
        <translation>音频</translation>
    </message>
    <message>
        <source>Other files</source>
        <translation>其他文件</translation>
    </message>
    <message>
        <source>Order of the files</source>
        <translation>文件排序</translation>
    </message>
    <message>
        <source>By name</source>
        <translation>按名称</translation>
    </message>
    <message>
        <source>Newest first</source>
        <translation>最新在前</translation>
    </message>
    <message>
        <source>Oldest first</source>
        <translation>最早在前</translation>
    </message>
    <message>
        <source>Largest first</source>
        <translation>最大在前</translation>
    </message>
    <message>
        <source>By type</source>
        <translation>按类型</translation>
    </message>
</context>
<context>
    <name>TrackMenu</name>
    <message>
        <source>Track %1</source>
        <translation>轨道 %1</translation>
    </message>
    <message>
        <source>Subtitles</source>
        <translation>字幕</translation>
    </message>
    <message>
        <source>None</source>
        <translation>无</translation>
    </message>
    <message>
        <source>Sound Track</source>
        <translation>音轨</translation>
    </message>
</context>
<context>
    <name>VideoArea</name>
    <message>
        <source>Video</source>
        <translation>视频</translation>
    </message>
    <message>
        <source>File…</source>
        <translation>文件…</translation>
    </message>
</context>
<context>
    <name>WaveWidget</name>
    <message>
        <source>Waveform</source>
        <translation>波形</translation>
    </message>
</context>
<context>
    <name>basemodule::BaseModule</name>
    <message>
        <source>Decoder and thumbnails</source>
        <translation>解码器与缩略图</translation>
    </message>
    <message>
        <source>Thumbnails cannot be kept in %1: the disk is full, or the folder cannot be written.</source>
        <translation>缩略图无法保存到 %1：磁盘已满，或文件夹不可写入。</translation>
    </message>
</context>
</TS>
