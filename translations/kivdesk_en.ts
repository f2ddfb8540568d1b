<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en">
<context>
    <name>AboutDialog</name>
    <message>
        <source>About kivdesk</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Coordinate transformation for surveying and GIS: points, coordinate files, datasets, four- and seven-parameter models and spatial reference systems.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Libraries in use:</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BatchProjTransCommand</name>
    <message>
        <source>The algorithm library fails to load!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>BatchReproject</source>
        <translation>Batch Reproject</translation>
    </message>
    <message>
        <source>Batch spatial reference system transformation process complete!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>BatchTransformation</source>
        <translation>Batch Transformation</translation>
    </message>
    <message>
        <source>Reproject Fail!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Batch spatial reference system transformation process failed!</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>BatchProjTransDlg</name>
    <message>
        <source>Batch Project</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>RemoveAll</source>
        <translation>Remove All</translation>
    </message>
    <message>
        <source>Check if there is a code number</source>
        <translation>Y has a zone number in front</translation>
    </message>
    <message>
        <source>Input Coordinate System:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Output Path:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Output Coordinate System:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Seven-parameter Conversion:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Raster Files(*.tiff *.tif *.img *.jp2);; Shape Files(*.shp)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File Abnormity!</source>
        <translation>The file is damaged!</translation>
    </message>
    <message>
        <source>There is no spatial reference!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Different Spatial Reference!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transform 4Parameter:</source>
        <translation>Four-parameter transformation:</translation>
    </message>
    <message>
        <source>Transform 7Parameter:</source>
        <translation>Seven-parameter transformation:</translation>
    </message>
    <message>
        <source>Open Directory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Source Spatial Reference is same with Target!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select Files</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No File Is Selected!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The input file has no spatial reference!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The output file is empty!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The output file has no space for reference!</source>
        <translation>The output file has no spatial reference!</translation>
    </message>
</context>
<context>
    <name>Calculate4ParamsDlg</name>
    <message>
        <source>Four-parameter Calculation</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input Source Coordinates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X0=</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Y0=</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input destination Coordinates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X1=</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Y1=</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Result</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Checked</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>SourceX</source>
        <translation>Source X</translation>
    </message>
    <message>
        <source>SourceY</source>
        <translation>Source Y</translation>
    </message>
    <message>
        <source>TargetX</source>
        <translation>Target X</translation>
    </message>
    <message>
        <source>TargetY</source>
        <translation>Target Y</translation>
    </message>
    <message>
        <source>RMS</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Run</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input data is incorrect, please re-enter!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Need 2 GCPs at least!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stop Edit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Calculate Error!</source>
        <translation>The calculation failed!</translation>
    </message>
    <message>
        <source>Information</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please run calculation first and get a correct result !</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>save result success!</source>
        <translation>The result was saved.</translation>
    </message>
    <message>
        <source>Open Text File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text Files (*.txt);;CSV Files(*.csv)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export success!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export failed!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This File is not Vaild!</source>
        <translation>This file is not valid.</translation>
    </message>
    <message>
        <source>Quality report</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Calculate7ParamsDlg</name>
    <message>
        <source>Seven-parameter Calculation</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input source Coordinates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>XYH</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>BLH</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>dd:mm:ss</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>dd:mm</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>dd</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ss</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>dd゜mm&apos;ss&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>B=</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>L=</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>H=</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ellipsoid:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input target Coordinates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X=</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Y=</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Result</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import Geographic Transformation:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select which points to use </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Checked</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>SourceB</source>
        <translation>Source B</translation>
    </message>
    <message>
        <source>SourceL</source>
        <translation>Source L</translation>
    </message>
    <message>
        <source>SourceH</source>
        <translation>Source H</translation>
    </message>
    <message>
        <source>TargetX</source>
        <translation>Target X</translation>
    </message>
    <message>
        <source>TargetY</source>
        <translation>Target Y</translation>
    </message>
    <message>
        <source>TargetH</source>
        <translation>Target H</translation>
    </message>
    <message>
        <source>PRMS</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>HRMS</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Edit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Run</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Click to select spatial reference</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>TargetB</source>
        <translation>Target B</translation>
    </message>
    <message>
        <source>TargetL</source>
        <translation>Target L</translation>
    </message>
    <message>
        <source>SourceX</source>
        <translation>Source X</translation>
    </message>
    <message>
        <source>SourceY</source>
        <translation>Source Y</translation>
    </message>
    <message>
        <source>Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input should be between 0 and 90</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input should be between 0 and 180</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is one or more coordinate is empty, Please input the coordinate</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Need 3 GCPs at least!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The Transformation model for the imported data is different from the currently selected elipsoid.Please reselect the ellipsoid!</source>
        <translation>The transformation model of the imported data does not match the selected ellipsoid. Please select the ellipsoid again.</translation>
    </message>
    <message>
        <source>The Source Spheroid must be different with target Spheroid!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Stop Edit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Calculate Error!</source>
        <translation>The calculation failed!</translation>
    </message>
    <message>
        <source>Information</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please run calculation first and get a correct result !</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>save result success!</source>
        <translation>The result was saved.</translation>
    </message>
    <message>
        <source>Open Text File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text Files (*.txt);;CSV Files(*.csv)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export success!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export failed!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>This File is not Vaild!</source>
        <translation>This file is not valid.</translation>
    </message>
    <message>
        <source>Quality report</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ControlPointQuality</name>
    <message>
        <source>The control points are incomplete or hold a value that is not a number.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Too few points: %1 given, the model needs at least %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Point %1: its height is missing on one side, so its height residual and height test mean nothing.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The source points coincide: they fix no model.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The points do not fix the model (identical or collinear points).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No redundancy: %1 points fix the %2 parameters exactly, so sigma0, the standard deviations and the w-test are unavailable.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check residuals need at least %1 points.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Point %1: no check residual, the other points do not fix the model.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The robust fit needs at least %1 points.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The robust fit failed: the points it keeps do not fix the model.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The w-test needs a redundancy of at least 2 in plane and in height; these points do not give it.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ControlPointReport</name>
    <message>
        <source>four-parameter (plane similarity)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>seven-parameter (spatial similarity)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Point %1 holds a gross error in %2: w = %3 exceeds the critical value; check its number and coordinates, or leave it out (robust weight %4).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>height</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>plane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No point is named as a gross error.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Control-point quality report</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Model: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Source: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Target: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Points: %1, observations: %2, parameters: %3, degrees of freedom: %4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>sigma0 = %1 m (%2 degrees of freedom)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Parameter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Least squares</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Std. dev.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Robust</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Correlations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>w-test: significance %1 for all points together, %2 per observation; critical |w| %3 in plane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>, %1 in height</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Robust fit: IGG III, k0 = %1, k1 = %2, %3 iterations</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Point</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>North</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>East</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Plane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Height</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check plane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check height</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>w plane</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>w height</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Weight</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Flag</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>gross error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>cannot write the PDF &quot;%1&quot;</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Residual vectors (plane)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ground: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Residual: %1</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ControlPointReportDlg</name>
    <message>
        <source>Quality report</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Save as PDF</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PDF Files (*.pdf)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Information</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The report was saved as &quot;%1&quot;.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Adds the points and their residual vectors, drawn longer by a stated factor, to the map</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show on map</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DataProjTransCommand</name>
    <message>
        <source>The algorithm library fails to load!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reproject</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Data spatial reference system transformation process complete!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Coordinate transformation</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reproject Fail!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Data spatial reference system transformation process failed!</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>DataProjTransDlg</name>
    <message>
        <source>Data Coordinate Conversion</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input File:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input Coordinate System:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Output File:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Output Folder:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Output Coordinate System:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check if there is a code number</source>
        <translation>Y has a zone number in front</translation>
    </message>
    <message>
        <source>Seven-parameter Conversion:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transform</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open  Data</source>
        <translation>Open Data</translation>
    </message>
    <message>
        <source>Raster Files(*.tiff *.tif *.img);; Shape Files(*.shp);; PGDB Files(*.mdb)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File Abnormity!</source>
        <translation>The file is damaged!</translation>
    </message>
    <message>
        <source>This Data has no spatialreference!</source>
        <translation>This dataset has no spatial reference!</translation>
    </message>
    <message>
        <source>Please select input file!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GeoTIFF Files(*.tif *.tiff);;ERDAS IMG(*.img);;ENVI IMG(*.img)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shape Files(*.shp)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Output File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GeoTIFF Files(*.tif *.tiff)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ERDAS IMG(*.img)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Directory</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transform 7Parameter:</source>
        <translation>Seven-parameter transformation:</translation>
    </message>
    <message>
        <source>Transform 4Parameter:</source>
        <translation>Four-parameter transformation:</translation>
    </message>
    <message>
        <source>The input file has no space for reference!</source>
        <translation>The input file has no spatial reference!</translation>
    </message>
    <message>
        <source>The output file is empty!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The output file has no space for reference!</source>
        <translation>The output file has no spatial reference!</translation>
    </message>
    <message>
        <source>The input file does not match the output file type!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please confirm whether the correct 7-parameter model has been set. If it has been set,please click OK. If not, please click Cancel to go back to set.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FileDataProjTransDlg</name>
    <message>
        <source>File Coordinate Conversion</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File Format:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Format</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input File:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Output File:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Original Coordinate System:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Output Coordinate System:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>7Parameter:</source>
        <translation>Seven parameters:</translation>
    </message>
    <message>
        <source>Import</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check if there is a code number</source>
        <translation>Y has a zone number in front</translation>
    </message>
    <message>
        <source>Transform</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Point ID</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Src Y</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Src X</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Src Z</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Target Y</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Target X</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Target Z</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Text File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text Files (*.txt);;CSV Files(*.csv)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Coordinate Conversion</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not enough memory to read the file!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input data is incorrect, please reset the file format in the interface!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Failed to open the file,please try again!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The coordinate Y may have a code,please remove the code!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Output File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text Files(*.txt);;CSV Files(*.csv)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Source Spatial Reference is same with Target!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>4Parameter:</source>
        <translation>Four parameters:</translation>
    </message>
    <message>
        <source>Select correct input file!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select correct output file!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input file is matching to output file!</source>
        <translation>The input file and the output file are the same!</translation>
    </message>
    <message>
        <source>Select original projection!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please select the output coordinate system!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Input file and output file projection same,do not need to transform!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Not enough memory to convert the file!</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FileFormatUI</name>
    <message>
        <source>FileFormatUI</source>
        <translation>Text File Format</translation>
    </message>
    <message>
        <source>Name:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Separator:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Data list</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Is there a title</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Ok</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>PointID</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Latitude</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Longitude</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>altitude</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>other</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Title</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>NoTitle</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The same field has been added,please read it!</source>
        <translation>This field has already been added.</translation>
    </message>
    <message>
        <source>The name can not be empty!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The name can not contain / \ : * ? &quot; &lt; &gt; | or control characters!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The name can not contain blanks!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The Separator can not be empty!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>There is a file with the same name.Please reset the file name!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please enter the correct file format!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The output file must have longitude and latitude!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>General format1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>General format2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>FileFormatXMLManagerDlg</name>
    <message>
        <source>FileFormatXMLManagerDlg</source>
        <translation>Text File Formats</translation>
    </message>
    <message>
        <source>FileFormatList</source>
        <translation>Formats</translation>
    </message>
    <message>
        <source>SelectAll</source>
        <translation>Select All</translation>
    </message>
    <message>
        <source>Add</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Close</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>HelpMenu</name>
    <message>
        <source>&amp;Help</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;User Guide</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Language</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>System Language</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;About kivdesk</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Language</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The language changes the next time kivdesk starts.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>KivAdapterUI::SpatialReferenceSelectorDlg</name>
    <message>
        <source>The definition of %1 cannot be read.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Area of use: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Bounds: west %1, south %2, east %3, north %4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Replaced by %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Recently Used</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Geographic Coordinate Systems</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Projected Coordinate Systems</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>1 system</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 systems</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>KivApplication</name>
    <message>
        <source>There is not enough memory to finish the operation.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The operation stopped with an error: %1</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The operation stopped with an unknown error.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>kivdesk</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LayerPanel</name>
    <message>
        <source>Layers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move Up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Move Down</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Remove</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom to Layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Draw the selected layer above the one over it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Draw the selected layer below the one under it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Take the selected layer out of the map</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show the whole of the selected layer</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Up</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Down</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>LayerSource</name>
    <message>
        <source>%1 does not exist.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GDAL cannot open %1.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GDAL cannot open %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 holds neither raster bands nor vector layers.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MainWindow</name>
    <message>
        <source>Map</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>kivdesk</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Layers</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>E&amp;xit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The plug-in %1 has no command %2.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Coordinate Transformation</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Plug-ins</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Command failed</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The command stopped with an unknown error.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;Add Data...</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add raster or vector files to the map</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Zoom to All</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Show every visible layer whole</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>&amp;View</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Add Data</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Rasters and vectors (*.tif *.tiff *.img *.vrt *.jpg *.png *.asc *.shp *.gpkg *.geojson *.json *.kml *.gml *.tab *.mif);;Rasters (*.tif *.tiff *.img *.vrt *.jpg *.png *.asc);;Vectors (*.shp *.gpkg *.geojson *.json *.kml *.gml *.tab *.mif);;All files (*)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X: %1  Y: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>  Lon: %1  Lat: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1 finished with warnings</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>%1: warnings</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>MapView</name>
    <message>
        <source>No layers yet. File &gt; Add Data shows rasters and vectors; the Coordinate Transformation menu converts points, coordinate files and datasets, and computes and stores transformation models.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>NewGeoCoorSysDlg</name>
    <message>
        <source>Dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Datum</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spheroid</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Semimajor axis</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Semiminor axis</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Inverse flattening</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Angular Unit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Radians/Unit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Central Merdian</source>
        <translation>Central Meridian</translation>
    </message>
    <message>
        <source>°</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>′</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>″</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New Geographic Coordinate System</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Parse spatial reference file failed!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read spatial reference file failed!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The current projection coordinate system does not support modification!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please enter a valid name of the new geographic coordinate system!</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>NewProjCoorSysDlg</name>
    <message>
        <source>Dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Projection</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Linear Unit</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Merters/Unit</source>
        <translation>Meters/Unit</translation>
    </message>
    <message>
        <source>Geographic Coordinate System</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Modify</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>New Projection Coordinate System</source>
        <translation>New Projected Coordinate System</translation>
    </message>
    <message>
        <source>Parse spatial reference file failed!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Read spatial reference file failed!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Parameter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Value</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spatial Reference type must be geographic coordinate system!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please enter a valid name of the new projection coordinate system!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please enter a valid geographic coordinate system!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The current projection coordinate system does not support modification!</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>OutputSpatialReferenceDlg</name>
    <message>
        <source>Dialog</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Content:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select a predefined projection file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import projection from a exsisted file</source>
        <translation>Import a projection from an existing file</translation>
    </message>
    <message>
        <source>New</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>To construct a new spatial reference system</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Modify</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Modify the spatial reference system</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Clear the spatial reference system</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export the spatial reference system</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Spatial Reference Information</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Geography Coordinate System</source>
        <translation>Geographic Coordinate System</translation>
    </message>
    <message>
        <source>Projection Coordinate System</source>
        <translation>Projected Coordinate System</translation>
    </message>
    <message>
        <source>The projection file is null!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Data doesn&apos;t have spatial reference!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Geographic Coordinate System</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Export success!</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>OutputSpatialRefernceDlg</name>
    <message>
        <source>Import From File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Shape Files (*.shp);;Raster Files (*.tif *.tiff *.img *.ldf *.dat *.1bd *.1b);;Image Files(*.bmp *.jpg);;Projection Files(*.prj);;All files(*.*)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Projection Files(*.prj);;All files(*.*)</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PluginLoader</name>
    <message>
        <source>The plug-in library %1 cannot be loaded: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The plug-in library %1 has no GetPluginModule entry point.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The plug-in library %1 gave no module.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PluginManifest</name>
    <message>
        <source>Coordinate Transformation</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Point Conversion</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Convert one point between two coordinate systems</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>File Conversion</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Convert every point of a coordinate text file</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reproject Dataset</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reproject a raster or vector dataset</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Batch Reproject</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Reproject several datasets into a folder</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Calculate 4 Parameters</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Compute a four-parameter model from control points</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Calculate 7 Parameters</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Compute a seven-parameter model from control points</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Enter 4 Parameters</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Type a known four-parameter model and store it</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Enter 7 Parameters</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Type a known seven-parameter model and store it</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>PointCoordsTransformDlg</name>
    <message>
        <source>Point Coordinate Conversion</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Seven-parameter Conversion:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Check if there is a code number</source>
        <translation>Y has a zone number in front</translation>
    </message>
    <message>
        <source>Original Coordinate System:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Select</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Converted Coordinates</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Degree</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>dd゜mm′ss″</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Meter</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>B</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>L</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>H</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Target Coordinate System:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Conversion Result</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transform</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Warning</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Source Spatial Reference is same with Target!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>X</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Y</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transform 4Parameter:</source>
        <translation>Four-parameter transformation:</translation>
    </message>
    <message>
        <source>Transform 7Parameter:</source>
        <translation>Seven-parameter transformation:</translation>
    </message>
    <message>
        <source>Please enter coordinates!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please enter original coordinate system!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please enter target coordinate system!</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ProgressIndicator</name>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>QObject</name>
    <message>
        <source>Cannot read the plug-in manifest %1: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The plug-in manifest %1 is not valid XML (line %2, column %3): %4</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The plug-in manifest %1 has a plug-in without a library (line %2).</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Plug-ins</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>RasterLayerSource</name>
    <message>
        <source>%1 cannot be drawn in the map&apos;s coordinate system: %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ResidualLayer</name>
    <message>
        <source>Control-point residuals (vectors x %1)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cannot write the residual layer &quot;%1&quot;: %2</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>the points&apos; positions are unknown.</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>GDAL has no GeoPackage driver.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>Save4ParamsResultDlg</name>
    <message>
        <source>Save4ParamsResultDlg</source>
        <translation>Save Four-parameter Model</translation>
    </message>
    <message>
        <source>Source SpatialReference</source>
        <translation>Source spatial reference</translation>
    </message>
    <message>
        <source>select</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Target SpatialReference</source>
        <translation>Target spatial reference</translation>
    </message>
    <message>
        <source>Transform model name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please input source spatialreference name! </source>
        <translation>Please enter the source spatial reference name.</translation>
    </message>
    <message>
        <source>Please input target spatialreference name! </source>
        <translation>Please enter the target spatial reference name.</translation>
    </message>
    <message>
        <source>Please input transform model name! </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Information</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The TransModelName has been taken,Wherher to replace it or not? </source>
        <translation>A model with this name already exists. Replace it?</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The TransModelName has been taken,Please input another one! </source>
        <translation>A model with this name already exists. Please enter another name.</translation>
    </message>
    <message>
        <source>save result failed!</source>
        <translation>The result could not be saved!</translation>
    </message>
</context>
<context>
    <name>Save7ParamsResultDlg</name>
    <message>
        <source>Save7ParamsResultDlg</source>
        <translation>Save Seven-parameter Model</translation>
    </message>
    <message>
        <source>TextLabel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transform model name:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>7 parameters</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please input source spatialreference name! </source>
        <translation>Please enter the source spatial reference name.</translation>
    </message>
    <message>
        <source>Please input target spatialreference name! </source>
        <translation>Please enter the target spatial reference name.</translation>
    </message>
    <message>
        <source>Please input transform model name! </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Information</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The TransModelName has been taken,Wherher to replace it or not? </source>
        <translation>A model with this name already exists. Replace it?</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The TransModelName has been taken,Please input another one! </source>
        <translation>A model with this name already exists. Please enter another name.</translation>
    </message>
    <message>
        <source>save result failed!</source>
        <translation>The result could not be saved!</translation>
    </message>
</context>
<context>
    <name>Set4ParamsDlg</name>
    <message>
        <source>Set 4 Params</source>
        <translation>Enter Four Parameters</translation>
    </message>
    <message>
        <source>Parameters</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>DX(m)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>DY(m)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>T(゜)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>K</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set Coordinate System</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Source SpatialReference</source>
        <translation>Source spatial reference</translation>
    </message>
    <message>
        <source>select</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Target SpatialReference</source>
        <translation>Target spatial reference</translation>
    </message>
    <message>
        <source>Transform model name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Information</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please select a  Projected Coordinate System! </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> 4 parameters  is saved successfully !</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Text File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text Files (*.txt);;CSV Files(*.csv)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please input valid parameter ! </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please input source spatialreference name! </source>
        <translation>Please enter the source spatial reference name.</translation>
    </message>
    <message>
        <source>Please input target spatialreference name! </source>
        <translation>Please enter the target spatial reference name.</translation>
    </message>
    <message>
        <source>Please input transform model name! </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The TransModelName has been taken,Wherher to replace it or not? </source>
        <translation>A model with this name already exists. Replace it?</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The TransModelName has been taken,Please input another one! </source>
        <translation>A model with this name already exists. Please enter another name.</translation>
    </message>
    <message>
        <source>save result failed!</source>
        <translation>The result could not be saved!</translation>
    </message>
</context>
<context>
    <name>Set7ParamsDlg</name>
    <message>
        <source>Set 7 Params</source>
        <translation>Enter Seven Parameters</translation>
    </message>
    <message>
        <source>Parameters</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>DX(m)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>DY(m)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>DZ(m)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>ω(″)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>κ(″)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>γ(″)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>m</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Import</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Set Coordinate System</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Source Ellipsoid</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>select</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Target Ellipsoid</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Transform model name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>OK</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Cancel</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Error</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The Source Spheroid must be different with target Spheroid!</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source> 7 parameters  is saved successfully !</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Open Text File</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Text Files (*.txt);;CSV Files(*.csv)</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please input valid parameter ! </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Information</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Please input source spatialreference name! </source>
        <translation>Please enter the source spatial reference name.</translation>
    </message>
    <message>
        <source>Please input target spatialreference name! </source>
        <translation>Please enter the target spatial reference name.</translation>
    </message>
    <message>
        <source>Please input transform model name! </source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The TransModelName has been taken,Wherher to replace it or not? </source>
        <translation>A model with this name already exists. Replace it?</translation>
    </message>
    <message>
        <source>Yes</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>No</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The TransModelName has been taken,Please input another one! </source>
        <translation>A model with this name already exists. Please enter another name.</translation>
    </message>
    <message>
        <source>save result failed!</source>
        <translation>The result could not be saved!</translation>
    </message>
</context>
<context>
    <name>SpatialReferenceSelectorDlg</name>
    <message>
        <source>Select Spatial Reference</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Filter:</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Words of the name, or a code such as 4214 or EPSG:4214</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Name</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>Code</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>ToolbarTexts</name>
    <message>
        <source>CoordsTransform_PointCoordsTransCommand</source>
        <translation>Point</translation>
    </message>
    <message>
        <source>CoordsTransform_FileDataProjTransCommand</source>
        <translation>File</translation>
    </message>
    <message>
        <source>CoordsTransform_DataProjTransCommand</source>
        <translation>Dataset</translation>
    </message>
    <message>
        <source>CoordsTransform_BatchProjectTrans</source>
        <translation>Batch</translation>
    </message>
    <message>
        <source>CoordsTransform_4params</source>
        <translation>Calc 4 Params</translation>
    </message>
    <message>
        <source>CoordsTransform_7params</source>
        <translation>Calc 7 Params</translation>
    </message>
    <message>
        <source>CoordsTransform_Set4params</source>
        <translation>Enter 4 Params</translation>
    </message>
    <message>
        <source>CoordsTransform_Set7params</source>
        <translation>Enter 7 Params</translation>
    </message>
</context>
<context>
    <name>UserGuideDialog</name>
    <message>
        <source>User Guide</source>
        <translation type="unfinished"></translation>
    </message>
    <message>
        <source>The user guide %1 is missing.</source>
        <translation type="unfinished"></translation>
    </message>
</context>
<context>
    <name>VectorLayerSource</name>
    <message>
        <source>%1 cannot be drawn in the map&apos;s coordinate system: %2</source>
        <translation type="unfinished"></translation>
    </message>
</context>
</TS>
