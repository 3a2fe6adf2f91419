<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="zh_CN" sourcelanguage="en">
<context>
    <name>AudioPlayerControlWidget</name>
    <message>
        <source>File Name</source>
        <translation>文件名</translation>
    </message>
    <message>
        <source>Play or pause</source>
        <translation>播放或暂停</translation>
    </message>
    <message>
        <source>Loop</source>
        <translation>循环播放</translation>
    </message>
</context>
<context>
    <name>AudioPreviewWidget</name>
    <message>
        <source>Set the Audio Preview Image</source>
        <translation>设置音频预览图</translation>
    </message>
    <message>
        <source>Audio cover set successfully</source>
        <translation>音频封面设置成功</translation>
    </message>
    <message>
        <source>This audio file cannot be played</source>
        <translation>无法播放该音频</translation>
    </message>
</context>
<context>
    <name>BigImgPreviewPlugin</name>
    <message>
        <source>Big Image Preview</source>
        <translation>大图预览</translation>
    </message>
</context>
<context>
    <name>CNoteWidget</name>
    <message>
        <source>Comments on the picture</source>
        <translation>图片批注</translation>
    </message>
    <message>
        <source>Ctrl+Tab chooses the next comment, Enter opens it and Delete deletes it</source>
        <translation>Ctrl+Tab 选择下一条批注，Enter 打开，Delete 删除</translation>
    </message>
</context>
<context>
    <name>CPopupTitleBarWidget</name>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>HubTitleBar</name>
    <message>
        <source>Back（Esc）</source>
        <translation>返回（Esc）</translation>
    </message>
    <message>
        <source>Minimize</source>
        <translation>最小化</translation>
    </message>
    <message>
        <source>Maximize or restore</source>
        <translation>最大化或还原</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
    <message>
        <source>Show Left &amp; Right Column (Tab)</source>
        <translation>显示左右栏 (Tab)</translation>
    </message>
    <message>
        <source>Hide Left &amp; Right Column (Tab)</source>
        <translation>隐藏左右栏 (Tab)</translation>
    </message>
    <message>
        <source>Restore</source>
        <translation>还原</translation>
    </message>
    <message>
        <source>Maximize</source>
        <translation>最大化</translation>
    </message>
</context>
<context>
    <name>ImgPreviewToolBar</name>
    <message>
        <source>Fit to Window</source>
        <translation>适应窗口</translation>
    </message>
    <message>
        <source>Fit to Window(</source>
        <translation>适应窗口(</translation>
    </message>
    <message>
        <source>Fit to Width</source>
        <translation>适应宽度</translation>
    </message>
    <message>
        <source>Fit to Width(</source>
        <translation>适应宽度(</translation>
    </message>
    <message>
        <source>Actual Size</source>
        <translation>实际大小</translation>
    </message>
    <message>
        <source>Actual Size(</source>
        <translation>实际大小(</translation>
    </message>
    <message>
        <source>Rotate</source>
        <translation>旋转</translation>
    </message>
    <message>
        <source>Flip</source>
        <translation>翻转</translation>
    </message>
    <message>
        <source>Crop</source>
        <translation>裁剪</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>批注</translation>
    </message>
    <message>
        <source>Zoom Out</source>
        <translation>缩小</translation>
    </message>
    <message>
        <source>Zoom Out(</source>
        <translation>缩小(</translation>
    </message>
    <message>
        <source>Zoom In</source>
        <translation>放大</translation>
    </message>
    <message>
        <source>Zoom In(</source>
        <translation>放大(</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
</context>
<context>
    <name>ImgPreviewWidget</name>
    <message>
        <source>Exporting</source>
        <translation>正在导出</translation>
    </message>
    <message>
        <source>Deleting files permanently</source>
        <translation>正在永久删除文件</translation>
    </message>
    <message>
        <source>Deleting files...</source>
        <translation>正在删除文件...</translation>
    </message>
    <message>
        <source>Export Library Pack</source>
        <translation>导出资源库包</translation>
    </message>
    <message>
        <source>Export file path...</source>
        <translation>选择导出位置...</translation>
    </message>
    <message>
        <source>Select file path...</source>
        <translation>选择文件位置...</translation>
    </message>
    <message>
        <source>Choose a photo</source>
        <translation>选择图片</translation>
    </message>
    <message>
        <source>Export File</source>
        <translation>导出文件</translation>
    </message>
    <message>
        <source>Export to Computer</source>
        <translation>导出到计算机</translation>
    </message>
    <message>
        <source>Copy/Paste</source>
        <translation>复制/粘贴</translation>
    </message>
    <message>
        <source>Copy the File</source>
        <translation>复制文件</translation>
    </message>
    <message>
        <source>Copy File Path</source>
        <translation>复制文件路径</translation>
    </message>
    <message>
        <source>Copy Labels</source>
        <translation>复制标签</translation>
    </message>
    <message>
        <source>Paste Labels</source>
        <translation>粘贴标签</translation>
    </message>
    <message>
        <source>Open with Default App</source>
        <translation>用默认应用打开</translation>
    </message>
    <message>
        <source>Open File Location</source>
        <translation>打开文件所在位置</translation>
    </message>
    <message>
        <source>File Settings</source>
        <translation>文件设置</translation>
    </message>
    <message>
        <source>Delete Permanently</source>
        <translation>永久删除</translation>
    </message>
    <message>
        <source>Delete to Recycle Bin</source>
        <translation>删除到回收站</translation>
    </message>
    <message>
        <source>Completed(%1%)</source>
        <translation>已完成(%1%)</translation>
    </message>
    <message>
        <source>Operation exception</source>
        <translation>操作异常</translation>
    </message>
    <message>
        <source>Failed to delete file, the file is currently occupied!</source>
        <translation>删除文件失败，文件正被占用！</translation>
    </message>
    <message>
        <source>Insufficient Disk Space</source>
        <translation>磁盘空间不足</translation>
    </message>
    <message>
        <source>This disk has insufficient space remaining. Please select another disk.</source>
        <translation>该磁盘剩余空间不足，请选择其他磁盘。</translation>
    </message>
    <message>
        <source>Export Complete</source>
        <translation>导出完成</translation>
    </message>
    <message>
        <source>Do you hope to view the export file(s) in folder?</source>
        <translation>要在文件夹中查看导出的文件吗？</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>OK</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>Set the Preview Image</source>
        <translation>设置预览图</translation>
    </message>
    <message>
        <source>Image cover set successfully</source>
        <translation>图片封面设置成功</translation>
    </message>
    <message>
        <source>Crop</source>
        <translation>裁剪</translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation>取消</translation>
    </message>
    <message>
        <source>Image failed to load, showing thumbnails</source>
        <translation>图片加载失败，显示缩略图</translation>
    </message>
</context>
<context>
    <name>NoteInfoEditWidget</name>
    <message>
        <source>Blue</source>
        <translation>蓝色</translation>
    </message>
    <message>
        <source>Orange</source>
        <translation>橙色</translation>
    </message>
    <message>
        <source>Cyan</source>
        <translation>青色</translation>
    </message>
    <message>
        <source>Yellow</source>
        <translation>黄色</translation>
    </message>
    <message>
        <source>Save</source>
        <translation>保存</translation>
    </message>
    <message>
        <source>Please insert comments.</source>
        <translation>请输入批注内容。</translation>
    </message>
    <message>
        <source>Comment</source>
        <translation>批注</translation>
    </message>
    <message>
        <source>Save (Ctrl+Enter)</source>
        <translation>保存 (Ctrl+Enter)</translation>
    </message>
    <message>
        <source>Comment %1</source>
        <translation>批注 %1</translation>
    </message>
</context>
<context>
    <name>NoteInfoShowWidget</name>
    <message>
        <source>Delete</source>
        <translation>删除</translation>
    </message>
    <message>
        <source>Modify</source>
        <translation>修改</translation>
    </message>
    <message>
        <source>Comment %1</source>
        <translation>批注 %1</translation>
    </message>
</context>
<context>
    <name>NoteUndoNotice</name>
    <message>
        <source>Comment deleted</source>
        <translation>批注已删除</translation>
    </message>
    <message>
        <source>Undo</source>
        <translation>撤销</translation>
    </message>
    <message>
        <source>Undo (Ctrl+Z)</source>
        <translation>撤销 (Ctrl+Z)</translation>
    </message>
</context>
<context>
    <name>PPtPreviewToolBar</name>
    <message>
        <source>Fit to Window</source>
        <translation>适应窗口</translation>
    </message>
    <message>
        <source>Fit to Window(</source>
        <translation>适应窗口(</translation>
    </message>
    <message>
        <source>Fit to Width</source>
        <translation>适应宽度</translation>
    </message>
    <message>
        <source>Fit to Width(</source>
        <translation>适应宽度(</translation>
    </message>
    <message>
        <source>Actual Size</source>
        <translation>实际大小</translation>
    </message>
    <message>
        <source>Actual Size(</source>
        <translation>实际大小(</translation>
    </message>
    <message>
        <source>Prev</source>
        <translation>上一页</translation>
    </message>
    <message>
        <source>Next</source>
        <translation>下一页</translation>
    </message>
    <message>
        <source>Zoom Out</source>
        <translation>缩小</translation>
    </message>
    <message>
        <source>Zoom Out(</source>
        <translation>缩小(</translation>
    </message>
    <message>
        <source>Zoom In</source>
        <translation>放大</translation>
    </message>
    <message>
        <source>Zoom In(</source>
        <translation>放大(</translation>
    </message>
</context>
<context>
    <name>PPtPreviewWidget</name>
    <message>
        <source>Current Page Set the Preview Image</source>
        <translation>将当前页设为预览图</translation>
    </message>
    <message>
        <source>Presentation cover set successfully</source>
        <translation>演示文稿封面设置成功</translation>
    </message>
    <message>
        <source>This page cannot be shown</source>
        <translation>无法显示此页</translation>
    </message>
</context>
<context>
    <name>PictureNotes</name>
    <message>
        <source>Comments cannot be placed while the picture cannot be shown</source>
        <translation>图片无法显示时不能添加批注</translation>
    </message>
    <message>
        <source>The comment could not be saved. Its text is on the clipboard.</source>
        <translation>批注未能保存，其文字已放到剪贴板。</translation>
    </message>
    <message>
        <source>Your comment on %1 was saved</source>
        <translation>你对 %1 的批注已保存</translation>
    </message>
    <message>
        <source>The comments could not be saved</source>
        <translation>批注未能保存</translation>
    </message>
</context>
<context>
    <name>PreviewDbClickWidget</name>
    <message>
        <source>Form</source>
        <translation>预览</translation>
    </message>
</context>
<context>
    <name>PreviewSpaceDialog</name>
    <message>
        <source>Quick Preview</source>
        <translation>快速预览</translation>
    </message>
    <message>
        <source>Close</source>
        <translation>关闭</translation>
    </message>
</context>
<context>
    <name>SoundControl</name>
    <message>
        <source>Mute or unmute</source>
        <translation>静音或取消静音</translation>
    </message>
</context>
<context>
    <name>SoundControlWin</name>
    <message>
        <source>Volume</source>
        <translation>音量</translation>
    </message>
</context>
<context>
    <name>TSBaseViewWidget</name>
    <message>
        <source>TSBaseViewWidget</source>
        <translation>TSBaseViewWidget</translation>
    </message>
</context>
<context>
    <name>TSMessageBox</name>
    <message>
        <source>TSMessageBox</source>
        <translation>消息</translation>
    </message>
    <message>
        <source>No</source>
        <translation>否</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation>是</translation>
    </message>
    <message>
        <source>Ok</source>
        <translation>确定</translation>
    </message>
    <message>
        <source>MessageBox</source>
        <translation>消息框</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation>文本</translation>
    </message>
</context>
<context>
    <name>TsLargerModeLoadingWidget</name>
    <message>
        <source>Loading...</source>
        <translation>正在加载...</translation>
    </message>
</context>
<context>
    <name>TsProgressDialog</name>
    <message>
        <source>Canceling task</source>
        <translation>正在取消任务</translation>
    </message>
</context>
<context>
    <name>VideoPlayerControlWidget</name>
    <message>
        <source>Position</source>
        <translation>播放位置</translation>
    </message>
    <message>
        <source>Play or pause</source>
        <translation>播放或暂停</translation>
    </message>
    <message>
        <source>Loop</source>
        <translation>循环播放</translation>
    </message>
</context>
<context>
    <name>VideoPlayerWidget</name>
    <message>
        <source>Mute or unmute</source>
        <translation>静音或取消静音</translation>
    </message>
</context>
<context>
    <name>VideoPreviewWidget</name>
    <message>
        <source>Current Frame Set the Preview Image</source>
        <translation>将当前帧设为预览图</translation>
    </message>
    <message>
        <source>Video cover set successfully</source>
        <translation>视频封面设置成功</translation>
    </message>
    <message>
        <source>Self-Adaption</source>
        <translation>自适应</translation>
    </message>
    <message>
        <source>Actual Size</source>
        <translation>实际大小</translation>
    </message>
    <message>
        <source>This video cannot be played</source>
        <translation>无法播放该视频</translation>
    </message>
</context>
<context>
    <name>WaitNotice</name>
    <message>
        <source>Please wait for the file to finish loading!</source>
        <translation>请等待文件加载完成！</translation>
    </message>
</context>
</TS>
